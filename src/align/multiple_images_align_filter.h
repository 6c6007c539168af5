#pragma once

#include <cstdint>

#include "algebra/matrix.h"
#include "align/align_params.h"
#include "align/align_random.h"
#include "align/feature_point_detection.h"
#include "align/match_list.h"
#include "foundation/fixed_point.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "parameters/filter.h"
#include "warp/homograph_mapping_filter.h"

namespace vkr {

class AlignPyramids;
struct AlignedPair;

// What alignment decides for the rest of the burst: the usable exposures, m_nLastValid exclusive.
struct ValidRange {
    int32_t m_nFirstValid = 0;
    int32_t m_nLastValid = 0;
};

// The registered face of alignment: the parameters that the parameter file reaches.
class CMultipleImagesAlignFilter : public CMultiFilterProcessFlow, public AlignParams {
public:
    CMultipleImagesAlignFilter();
    void SetFilterName() override;
    void RegisterFilters() override;
    void RegisterParameters() override;

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
    // 255 where the frame covers the picture: of the frame's size, padded to what the pyramid asks for, for the
    // reference; of half that for the others). A pair of neighbours that can not be matched keeps its places; with
    // bDropAlignFail it also narrows range, which comes as 0 .. nExposureNum. Same bytes from any number of threads.
    // False when there was no memory; the frames have their own size again on every way out, though then not all of
    // them are warped.
    bool AlignImages(CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks, ValidRange& range,
                     const StageDumps& dumps = {});

    // Of the last run: takes points of exposure j + 1 to points of exposure j, the origin at the picture's centre.
    const CMatrix& PairHomography(int j) const { return m_H[j]; }

private:
    bool AlignPadded(CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks, ValidRange& range,
                     const StageDumps& dumps);
    bool MatchPairs(AlignPyramids& pyramids, int nReference, ValidRange& range, const StageDumps& dumps);
    bool PyramidFeatureMatch(const CImage* pFirst, const CImage* pSecond, AlignRandom& random, CMatrix& homography,
                             const StageDumps& dumps, AlignedPair& report);
    bool DetectFeatures(const CImage* pLevels, FeaturePoint* pFeatures, int& nCount, int nWhich,
                        const StageDumps& dumps) const;
    bool EstimateHomography(const CImage& first, const CImage& second, const MatchList& matches, AlignRandom& random,
                            CMatrix& homography, AlignedPair& report);
    void ComposeHomographies(int nExposureNum, int nReference, CMatrix* vToReference) const;
    bool WarpFrames(CYuvImage* vFrames, int nExposureNum, int nReference, const CMatrix* vToReference,
                    CImage* vAlignMasks, const StageDumps& dumps);

    CFeaturePointDetectionOpt m_FeatureDetectionOpt;
    CHomographMappingFilter m_HomographMappingFilter;
    CMatrix m_H[kMaxExposures];
    char m_szPairTag[32] = {};  // "_Exp0_1": names the dumps of the pair under way
};

// Masks of a burst that is taken as it lies: 255 everywhere, sizes as above. False when there was no memory.
bool FillAlignMasks(const CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks);

}  // namespace vkr
