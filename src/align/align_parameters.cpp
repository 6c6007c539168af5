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

void CMultipleImagesAlignFilter::RegisterParameters()
{
    ADD_PARAM(bDumpDebug);
    ADD_PARAM(bDropAlignFail);
    ADD_PARAM(nFeatureMatchLevel);
    ADD_PARAM(nHistogramMatchingLevel);
    ADD_PARAM(nMaxSearchX);
    ADD_PARAM(nMaxSearchY);
    ADD_PARAM(nInitMatchThreX);
    ADD_PARAM(nInitMatchThreY);
    ADD_PARAM(nMinFeatureNum);
    ADD_PARAM(bRefineMatchEnable);
    ADD_PARAM(nRefineMatchThreX);
    ADD_PARAM(nRefineMatchThreY);
    ADD_PARAM(nMatchLevel);
    ADD_PARAM(nRANSACMaxIt);
    ADD_PARAM(nRANSACThre);
    ADD_PARAM(nRANSACPsThre);
    ADD_PARAM(bAlignPyramidFilter);
    ADD_PARAM(bAlignPyramidDither);
}

}  // namespace vkr
