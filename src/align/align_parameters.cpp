#include "align/multiple_images_align_filter.h"

namespace vkr {

// Qualified calls: the list of sub-filters belongs to this class even while the derived one is being made.
CMultipleImagesAlignFilter::CMultipleImagesAlignFilter()
{
    m_HomographMapping.Initialize();
    m_FeatureDetection.Initialize();
    CMultipleImagesAlignFilter::SetFilterName();
    CMultipleImagesAlignFilter::RegisterFilters();
    CMultipleImagesAlignFilter::RegisterParameters();
}

CMultipleImagesAlignFilterOpt::CMultipleImagesAlignFilterOpt()
{
    m_FeatureDetectionOpt.Initialize();
    m_HomographMappingFilter.Initialize();
}

void CMultipleImagesAlignFilter::SetFilterName()
{
    StoreName("CMultipleImagesAlignFilter");
}

void CMultipleImagesAlignFilter::RegisterFilters()
{
    AddFilter(m_Filters, m_FeatureDetection, nullptr);
    AddFilter(m_Filters, m_HomographMapping, nullptr);
}

// clang-format off
void CMultipleImagesAlignFilter::RegisterParameters()
{
    //    member                   min   max  default  meaning
    PARAM(bDumpDebug,                0,    1,       1);  // write debug pictures and texts
    PARAM(bDropAlignFail,            0,    1,       0);  // a failed pair cuts the usable range of exposures
    PARAM(nFeatureMatchLevel,        0,    8,       3);  // pyramid level of detection and first match
    PARAM(nHistogramMatchingLevel,   0,    8,       0);  // pyramid level on which the histogram is taken
    PARAM(nMaxSearchX,               1,  256,      20);  // half width of the match window, pixels of that level
    PARAM(nMaxSearchY,               0,  256,      20);  // half height
    PARAM(nInitMatchThreX,           1,    8,       2);  // accepted displacement of the dense search, pixels
    PARAM(nInitMatchThreY,           1,    8,       2);
    PARAM(nMinFeatureNum,            8, 1024,     128);  // least number of pairs
    PARAM(bRefineMatchEnable,        0,    1,       1);  // check pairs from coarse to fine
    PARAM(nRefineMatchThreX,         1,   32,       4);  // tolerance of that check, pixels
    PARAM(nRefineMatchThreY,         1,   32,       4);
    PARAM(nMatchLevel,               0,    8,       3);  // levels of that check
    PARAM(nRANSACMaxIt,              1, 1000,     100);  // iterations
    PARAM_ARRAY(nRANSACThre,         1,   16,    4, 4);  // pixels: inliers of a sample's fit, inliers of the count
    PARAM_ARRAY(nRANSACPsThre,       0,  100,  90, 95);  // percent of pairs: to accept, to stop early
    PARAM(bAlignPyramidFilter,       0,    1,       0);  // carry of the halving that the next one chooses
    PARAM(bAlignPyramidDither,       0,    1,       0);  // 1 the filtered halving, 0 the plain one
}
// clang-format on

}  // namespace vkr
