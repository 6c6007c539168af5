#include <cmath>

#include "align/align_dump.h"
#include "align/aligned_pair.h"
#include "align/init_match.h"
#include "align/multiple_images_align_filter.h"
#include "align/ransac.h"
#include "align/refine_match.h"
#include "foundation/heap_buffer.h"
#include "foundation/log.h"
#include "foundation/timing.h"

namespace vkr {

namespace {

bool AllFinite(const CMatrix& matrix)
{
    for (int i = 0; i < 9; ++i) {
        if (!std::isfinite(matrix.At(i / 3, i % 3))) return false;
    }
    return true;
}

// A link that composition and the warp can use in both directions.
bool Invertible(const CMatrix& homography)
{
    CMatrix inverse = homography;
    return AllFinite(homography) && inverse.Invert() == CMatrix::kNoError && AllFinite(inverse);
}

void PrintHomography(int nInliers, const CMatrix& h)
{
    HdrPrintf("BestNum=%d Homograph Matrix:\n", nInliers);
    for (int y = 0; y < 3; ++y) HdrPrintf("%12.8f\t%12.8f\t%12.8f\t\n", h.At(y, 0), h.At(y, 1), h.At(y, 2));
}

}  // namespace

// Corners of the coarsest level, carried down to level 0. nWhich: 0 the pair's first picture, 1 its second.
bool CMultipleImagesAlignFilterOpt::DetectFeatures(const CImage* pLevels, FeaturePoint* pFeatures, int& nCount,
                                                   int nWhich, const StageDumps& dumps) const
{
    GoalTimer timer("==== ==== ==== ==== PyramidFeatureDetect Done");
    const CImage& top = pLevels[nFeatureMatchLevel];
    const bool bFound =
        m_FeatureDetectionOpt.Detect(top, pFeatures, nCount, kMaxFeatures, 0, 0, top.nWidth, top.nHeight);
    for (int k = nFeatureMatchLevel - 1; k >= 0; --k) m_FeatureDetectionOpt.RefineLevel(pLevels[k], pFeatures, nCount);
    if (!bFound) {
        HdrPrintf("Detecting Feature points fail, %d-th", nWhich);
        return false;
    }
    timer.Reached();
    HdrPrintf(" image: %d Feature points found\n", nCount);
    if (dumps) DumpFeatures(m_szPairTag, nWhich, pLevels[0], pFeatures, nCount);
    HdrLog("m_nFeatureMatchLevel = %d", nFeatureMatchLevel);
    HdrLog("m_nFeatureMatchLevel = %d\n", nFeatureMatchLevel);
    return true;
}

bool CMultipleImagesAlignFilterOpt::PyramidFeatureMatch(const CImage* pFirst, const CImage* pSecond,
                                                        AlignRandom& random, CMatrix& homography,
                                                        const StageDumps& dumps, AlignedPair& report)
{
    HeapBuffer<FeaturePoint> scratch;  // features of both pictures, then both sides of the pairs
    if (!scratch.Allocate(4 * static_cast<size_t>(kMaxFeatures))) return false;
    FeaturePoint* const pFeatures[2] = {scratch.Data(), scratch.Data() + kMaxFeatures};
    MatchList matches{pFeatures[1] + kMaxFeatures, pFeatures[1] + 2 * kMaxFeatures, 0};
    if (!DetectFeatures(pFirst, pFeatures[0], report.nFeatures[0], 0, dumps)) return false;
    if (!DetectFeatures(pSecond, pFeatures[1], report.nFeatures[1], 1, dumps)) return false;

    // The first picture stands on both sides: places are compared where they lie, before anything has moved.
    const CImage& top = pFirst[nFeatureMatchLevel];
    const InitMatchParams initParams{nFeatureMatchLevel, nMaxSearchX,     nMaxSearchY,
                                     nInitMatchThreX,    nInitMatchThreY, nMinFeatureNum};
    const bool bMatched = FindInitMatchPair({top, pFeatures[0], report.nFeatures[0]},
                                            {top, pFeatures[1], report.nFeatures[1]}, initParams, 0, 0, matches);
    report.nInitMatches = report.nRefinedMatches = matches.nCount;
    if (!bMatched) return false;
    HdrPrintf("FindInitMatchPair %s: %d\n", m_szPairTag, matches.nCount);
    if (dumps) DumpMatches("InitMatch", m_szPairTag, pFirst[0], pSecond[0], matches);

    if (bRefineMatchEnable) {
        HdrPrintf("Init Match Pair=%d \n", matches.nCount);
        const RefineMatchParams refineParams{nMatchLevel, nRefineMatchThreX, nRefineMatchThreY, nMinFeatureNum};
        const bool bRefined = RefineMatchPair(pFirst, pSecond, nFeatureMatchLevel + 1, refineParams, matches);
        report.nRefinedMatches = matches.nCount;
        if (!bRefined) {
            HdrLog("RefineMatchPair Fail!");
            return false;
        }
        HdrPrintf("Final Match Pair=%d\n", matches.nCount);
        if (dumps) DumpMatches("FinalMatch", m_szPairTag, pFirst[0], pSecond[0], matches);
    }
    return EstimateHomography(pFirst[0], pSecond[0], matches, random, homography, report);
}

// A link that can not be inverted counts as a failed pair, however many points agree with it.
bool CMultipleImagesAlignFilterOpt::EstimateHomography(const CImage& first, const CImage& second,
                                                       const MatchList& matches, AlignRandom& random,
                                                       CMatrix& homography, AlignedPair& report)
{
    const RansacParams params{nRANSACMaxIt,
                              {nRANSACThre[0], nRANSACThre[1]},
                              {nRANSACPsThre[0], nRANSACPsThre[1]},
                              {first.nWidth, second.nWidth},
                              {first.nHeight, second.nHeight}};
    CMatrix estimate = IdentityHomography();
    report.nInliers = Ransac(matches, params, random, estimate);
    if (report.nInliers < matches.nCount * nRANSACPsThre[0] / 100) {
        HdrPrintf("Too few match in RANSAC");
        return false;
    }
    if (!Invertible(estimate)) return false;
    PrintHomography(report.nInliers, estimate);
    homography.Swap(estimate);
    return true;
}

}  // namespace vkr
