#pragma once

#include <cstdint>

#include "align/feature_point_detection.h"
#include "align/homograph_mapping_filter.h"
#include "foundation/filter.h"
#include "foundation/image.h"

namespace vkr {

// What alignment decides for the rest of the burst: the usable exposures, m_nLastValid exclusive.
struct ValidRange {
    int32_t m_nFirstValid = 0;
    int32_t m_nLastValid = 0;
};

// The registered face of alignment: the parameters that the parameter file reaches.
class CMultipleImagesAlignFilter : public CMultiFilterProcessFlow {
public:
    CMultipleImagesAlignFilter();
    void SetFilterName() override;
    void RegisterFilters() override;
    void RegisterParameters() override;

    int32_t bDumpDebug = 0;
    int32_t bDropAlignFail = 0;
    int32_t nFeatureMatchLevel = 0;
    int32_t nHistogramMatchingLevel = 0;
    int32_t nMaxSearchX = 0, nMaxSearchY = 0;
    int32_t nInitMatchThreX = 0, nInitMatchThreY = 0;
    int32_t nMinFeatureNum = 0;
    int32_t bRefineMatchEnable = 0;
    int32_t nRefineMatchThreX = 0, nRefineMatchThreY = 0;
    int32_t nMatchLevel = 0;
    int32_t nRANSACMaxIt = 0;
    int32_t nRANSACThre[2] = {};
    int32_t nRANSACPsThre[2] = {};
    int32_t bAlignPyramidFilter = 0;
    int32_t bAlignPyramidDither = 0;

private:
    CFeaturePointDetection m_FeatureDetection;   // in the parameter text only
    CHomographMappingFilter m_HomographMapping;  // in the parameter text only
};

// The one that runs. Its own detector and warp are made after the list of sub-filters stands: the parameter file does
// not reach them and they keep their defaults.
class CMultipleImagesAlignFilterOpt : public CMultipleImagesAlignFilter {
public:
    CMultipleImagesAlignFilterOpt();

    // Brings the exposures onto exposure nReference, in place, and writes one mask per exposure (kMaxExposures records,
    // 255 where the frame covers the picture: of the frame's size for the reference, of half that for the others).
    // range comes as 0 .. nExposureNum and is narrowed where frames can not be used. False when there was no memory.
    bool AlignImages(CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks, ValidRange& range);

private:
    CFeaturePointDetectionOpt m_FeatureDetectionOpt;
    CHomographMappingFilter m_HomographMappingFilter;
};

// Masks of a burst that is taken as it lies: 255 everywhere, sizes as above. False when there was no memory.
bool FillAlignMasks(const CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks);

}  // namespace vkr
