#include <algorithm>
#include <atomic>

#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"
#include "ghosts/ghost_difference.h"
#include "ghosts/ghost_dump.h"
#include "ghosts/ghost_histogram.h"
#include "ghosts/ghost_pair.h"
#include "ghosts/ghost_process_filter.h"
#include "ghosts/ghost_pyramid.h"

namespace vkr {

namespace {

// Everything that one burst needs, given back on every way out. Pair k is exposures k and k + 1.
struct GhostBurst {
    GhostBurst() = default;
    ~GhostBurst()
    {
        mask.Release();
        for (CImage& ghost : vGhosts) ghost.Release();
    }
    GhostBurst(const GhostBurst&) = delete;
    GhostBurst& operator=(const GhostBurst&) = delete;

    int nExposureNum = 0, nReference = 0;
    CImage mask = {};  // what every frame covers, at level 0
    GhostShares vShares[kMaxExposures];
    GhostPyramid vPlain[kMaxExposures], vMatched[kMaxExposures - 1];  // per exposure, per pair
    CImage vGhosts[kMaxExposures] = {};  // per exposure, that of the step towards the reference
};

bool IsBurst(const CImage* vFrames, int nExposureNum, int nReference)
{
    if (nExposureNum < 1 || nExposureNum > kMaxExposures || nReference < 0 || nReference >= nExposureNum) return false;
    return std::all_of(vFrames, vFrames + nExposureNum, [&](const CImage& frame) {
        return !frame.Empty() && frame.nDim == 3 && frame.nWidth == vFrames[0].nWidth &&
               frame.nHeight == vFrames[0].nHeight;
    });
}

// fn(i) for all items, true if all were. fn returns false when there is no memory.
template <class Fn>
bool AllItems(int nItems, const Fn& fn)
{
    std::atomic<bool> bDone{true};
    ParallelItems(nItems, [&](int i) {
        if (!fn(i)) bDone = false;
    });
    return bDone;
}

// Only the reference's mask is read; without one nothing counts as covered.
bool HalveFrames(GhostBurst& burst, const CImage* vFrames, const CImage& mask, const PyramidParams& pyramid)
{
    return AllItems(burst.nExposureNum + 1, [&](int k) {
        if (k < burst.nExposureNum) return burst.vPlain[k].TakeFrame(vFrames[k], pyramid);
        return mask.Empty() || mask.nDim != 1 ||
               HalveImage(mask, burst.mask, pyramid.bPyramidFilter, pyramid.bDownScaleImageDither);
    });
}

void MeasureShares(GhostBurst& burst)
{
    ParallelItems(burst.nExposureNum,
                  [&](int k) { BuildMaskHist_Integral(burst.vPlain[k].Image(0), burst.mask, burst.vShares[k]); });
    burst.mask.Release();
}

bool ClearReferenceGhost(GhostBurst& burst)
{
    const CImage& image = burst.vPlain[burst.nReference].Image(0);
    CImage& ghost = burst.vGhosts[burst.nReference];
    if (!ghost.AllocateGray(image.nWidth, image.nHeight)) return false;
    std::fill_n(ghost.pData, ghost.Samples(), uint8_t{0});
    return true;
}

// Plain and matched pyramids side by side, one item each: they share nothing but the level 0 of the exposures.
bool BuildPyramids(GhostBurst& burst, const CGhostProcessFilter& params, const PyramidParams& pyramid)
{
    const int nStart = params.nGhostPyramidStartLevel;
    return AllItems(2 * burst.nExposureNum - 1, [&](int i) {
        if (i < burst.nExposureNum) return burst.vPlain[i].Build(nStart, GhostEdgeLevels(params), pyramid);
        const int k = i - burst.nExposureNum;
        GhostPyramid& matched = burst.vMatched[k];
        return matched.TakeMatched(burst.vPlain[k], burst.vShares[k], burst.vShares[k + 1]) &&
               matched.Build(nStart, GhostDetectLevels(params), pyramid);
    });
}

// A pair that fails leaves its ghost as far as it got.
void DetectPairs(GhostBurst& burst, const CGhostProcessFilter& params, const PyramidParams& pyramid,
                 const StageDumps& dumps)
{
    ParallelItems(burst.nExposureNum - 1, [&](int k) {
        const GhostPair pair{burst.vPlain[k], burst.vPlain[k + 1], burst.vMatched[k]};
        CImage& ghost = burst.vGhosts[k < burst.nReference ? k : k + 1];
        DetectGhostPair(pair, params, pyramid, GhostDumps(dumps, k), ghost);
    });
}

// Ghosts that did not reach the size of level 0 are left out.
CImage& MergeGhosts(GhostBurst& burst)
{
    CImage& merged = burst.vGhosts[burst.nReference];
    for (int k = 0; k < burst.nExposureNum; ++k) {
        const CImage& ghost = burst.vGhosts[k];
        if (k == burst.nReference || ghost.nWidth != merged.nWidth || ghost.nHeight != merged.nHeight) continue;
        TakeLarger(ghost, merged);
    }
    return merged;
}

bool Detect(GhostBurst& burst, const CImage* vFrames, const CImage& mask, const CGhostProcessFilter& params,
            const PyramidParams& pyramid, const StageDumps& dumps, CImage& ghostMap)
{
    if (!HalveFrames(burst, vFrames, mask, pyramid)) return false;
    TimedStage("==== ==== === BuildMaskHist_Integral Done", [&] { MeasureShares(burst); });
    if (!ClearReferenceGhost(burst) || !BuildPyramids(burst, params, pyramid)) return false;
    DetectPairs(burst, params, pyramid, dumps);
    const CImage& merged = MergeGhosts(burst);
    const bool bDone = DoubleImage(merged, ghostMap, pyramid.bPyramidFilter, pyramid.bUpScaleImageDither);
    for (int k = 0; k < burst.nExposureNum; ++k) dumps.If(bDone).Save(burst.vGhosts[k], "GhostDump/Ghost_%d.bmp", k);
    return bDone;
}

}  // namespace

bool CGhostProcessFilter::DetectGhost(const WorkBurst& work, const CImage* vAlignMasks, const PyramidParams& pyramid,
                                      const StageDumps& dumps, CImage& ghostMap)
{
    if (!IsBurst(work.vFrames, work.nExposureNum, work.nReference)) return false;
    bDiffSelect = 2;
    if (nGhostPyramidStartLevel < nMinGhostLevel) {
        HdrLog("nGhostPyramidStartLevel=%d is finer than nMinGhostLevel=%d%s", nGhostPyramidStartLevel, nMinGhostLevel,
               bRefineGhostAtMinGhostLevel ? ", no ghost is found" : "");
    }
    HdrPrintf("Ghost Detection Start\n!!!");
    GhostBurst burst;
    burst.nExposureNum = work.nExposureNum;
    burst.nReference = work.nReference;
    const CImage& mask = vAlignMasks[work.nReference];
    const bool bDone = Detect(burst, work.vFrames, mask, *this, pyramid, dumps.If(bDumpDebug), ghostMap);
    HdrPrintf("Ghost Detection Done\n!!!");
    return bDone;
}

}  // namespace vkr
