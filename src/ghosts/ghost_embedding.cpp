#include "ghosts/ghost_embedding.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "ghosts/edge_coefficient.h"
#include "ghosts/embedding_dump.h"
#include "ghosts/ghost_choice.h"
#include "ghosts/level_carry.h"
#include "ghosts/region_shares.h"
#include "primitives/regions.h"
#include "primitives/share_rows.h"

namespace vkr {

namespace {

// A burst at the level on which regions are found.
struct StartLevel {
    StartLevel() = default;
    ~StartLevel()
    {
        ghost.Release();
        for (CImage& frame : vFrames) frame.Release();
        labels.Release();
        edges.Release();
        shares.Release();
    }
    StartLevel(const StartLevel&) = delete;
    StartLevel& operator=(const StartLevel&) = delete;

    // value / 16384 of the picture, in pixels.
    int32_t Share(int32_t nValue) const
    {
        return static_cast<int32_t>((int64_t{nValue} * ghost.nWidth * ghost.nHeight) >> 14);
    }

    int nExposureNum = 0, nReference = 0;
    CImage ghost = {};
    CImage vFrames[kMaxExposures] = {};
    CRegionLabels regions;
    CLabelImage labels = {}, edges = {};
    CShortImage shares = {};  // of the exposures at each pixel, from the regions that chose them
};

bool IsBurst(const WorkBurst& burst)
{
    if (burst.nExposureNum < 1 || burst.nExposureNum > kMaxExposures) return false;
    if (burst.nReference < 0 || burst.nReference >= burst.nExposureNum) return false;
    return std::all_of(burst.vFrames, burst.vFrames + burst.nExposureNum, [&](const CImage& frame) {
        return !frame.Empty() && frame.nDim == 3 && frame.nWidth == burst.vFrames[0].nWidth &&
               frame.nHeight == burst.vFrames[0].nHeight;
    });
}

bool LevelsFit(const CImage* vWeights, int nExposureNum, int nMin, int nStart, int nMax)
{
    if (nMin < 0 || nMin > nStart || nStart > nMax || nMax >= kMaxLevels) return false;
    return std::all_of(vWeights + nMin, vWeights + nMax + 1,
                       [&](const CImage& level) { return !level.Empty() && level.nDim == nExposureNum; });
}

// False as well where the halved frames do not have the size of the weights.
bool ReduceToStart(const CImage& ghostMap, const CImage* vFrames, const CImage& weights, int nLevel,
                   const PyramidParams& pyramid, StartLevel& start)
{
    for (int k = 0; k < start.nExposureNum; ++k) {
        CImage& frame = start.vFrames[k];
        if (!HalveTimes(vFrames[k], nLevel, pyramid.bPyramidFilter, pyramid.bDownScaleImageDither, frame)) return false;
        if (frame.nWidth != weights.nWidth || frame.nHeight != weights.nHeight) return false;
    }
    return !ghostMap.Empty() && ghostMap.nDim == 1 &&
           HalveTimes(ghostMap, nLevel, pyramid.bPyramidFilter, pyramid.bDownScaleOtherDither, start.ghost) &&
           CropTo(start.ghost, weights.nWidth, weights.nHeight);
}

bool LabelGhosts(const GhostEmbedParams& params, const StageDumps& dumps, StartLevel& start)
{
    if (!start.regions.Label(start.ghost, start.labels, start.edges, params.nGhostBinaryThresh)) return false;
    if (dumps) DumpLabels(start.labels, start.regions.nTotalRegionNum - 1, "Segment_Init");
    if (dumps) DumpLabels(start.edges, start.regions.nTotalRegionNum - 1, "Edge_Init");
    HdrPrintf("GhostArea=%d pixels, Th=%d\n", start.regions.nTotalArea, start.Share(params.nGhostLimitPerTh));
    return true;
}

// What the map asks for. The number of regions is tested first, and the limit counts small regions too.
GhostEmbedding JudgeGhosts(const StartLevel& start, const GhostEmbedParams& params)
{
    const int nRegions = start.regions.CountAbove(start.Share(params.nMinConnectAreaPer));
    if (nRegions > params.nMaxGhostRegionNum) {
        HdrPrintf("Too many ghost regions");
        return GhostEmbedding::kNone;
    }
    if (start.regions.nTotalArea > start.Share(params.nGhostLimitPerTh)) return GhostEmbedding::kWholePicture;
    return nRegions > 0 ? GhostEmbedding::kRegions : GhostEmbedding::kNone;
}

// Statistics of the regions that are large enough, and the exposure that each takes.
bool ChooseExposures(const CImage& weights, const GhostEmbedParams& params, StartLevel& start,
                     HeapBuffer<int32_t>& chosen)
{
    const int32_t nMinArea = start.Share(params.nMinConnectAreaPer);
    if (!start.regions.KeepAbove(nMinArea, start.labels, start.edges)) return false;
    const size_t nRegions = static_cast<size_t>(start.regions.nTotalRegionNum - 1);
    HeapBuffer<RegionStats> stats;
    if (!stats.AllocateZero(nRegions) || !chosen.Allocate(nRegions)) return false;
    for (size_t r = 0; r < nRegions; ++r) {
        stats[r].nArea = start.regions.Area(static_cast<int>(r) + 1);
        stats[r].nEdgeLen = start.regions.EdgeLen(static_cast<int>(r) + 1);
    }
    MeasureRegions(start.labels, start.edges, weights, start.vFrames, start.nExposureNum, params, stats.Data());
    for (size_t r = 0; r < nRegions; ++r) {
        chosen[r] = ChooseExposure(stats[r], start.nExposureNum, params, static_cast<int>(r), nMinArea);
    }
    return true;
}

bool ShareStart(GhostEmbedding task, const CImage& weights, const GhostEmbedParams& params, const StageDumps& dumps,
                StartLevel& start)
{
    if (task == GhostEmbedding::kWholePicture) {
        return ShareWholePicture(weights.nWidth, weights.nHeight, start.nReference, start.nExposureNum, start.shares);
    }
    HeapBuffer<int32_t> chosen;
    if (!ChooseExposures(weights, params, start, chosen)) return false;
    const bool bSoft = params.bUseDilatedGhost != 0;
    return ShareRegions(start.labels, chosen.Data(), static_cast<int>(chosen.Count()), start.nExposureNum,
                        bSoft ? params.nGhostSmoothIter : 0, dumps.If(bSoft), start.shares);
}

// New weights of one pixel, in place. Where the shares sum to less than 1.0 the old weights have the rest.
void MixWeights(const int16_t* pShares, int32_t nSum, int nExposureNum, int nStrength, uint8_t* pWeights)
{
    for (int k = 0; k < nExposureNum; ++k) {
        const int32_t nOld = pWeights[k], nChosen = pShares[k] * kWeightOne;
        const int32_t nMixed = nSum < kWeightOne ? ((kWeightOne - nSum) * nOld + nChosen) / kWeightOne : nChosen / nSum;
        pWeights[k] = static_cast<uint8_t>((nStrength * nMixed + (256 - nStrength) * nOld) / 256);
    }
}

// pCoefs: a row of coefficients, null without edge compensation.
void RewriteRow(const StartLevel& start, int y, const EdgeGains* pGains, int nMaxGain, int nStrength, uint8_t* pWeights,
                int16_t* pCoefs)
{
    const int n = start.nExposureNum;
    const int16_t* pShares = start.shares.Row(y);
    const uint8_t* vRows[kMaxExposures];
    for (int k = 0; k < n; ++k) vRows[k] = start.vFrames[k].Row(y);
    if (pCoefs != nullptr) std::fill_n(pCoefs, start.shares.RowSamples(), int16_t{kWeightOne});
    for (int x = 0; x < start.shares.nWidth; ++x, pShares += n, pWeights += n) {
        const int32_t nSum = std::accumulate(pShares, pShares + n, 0);
        if (nSum == 0) continue;  // no region reaches here
        uint8_t vOld[kMaxExposures];
        std::memcpy(vOld, pWeights, static_cast<size_t>(n));
        MixWeights(pShares, nSum, n, nStrength, pWeights);
        if (pCoefs == nullptr) continue;
        const uint8_t* vPixels[kMaxExposures];
        for (int k = 0; k < n; ++k) vPixels[k] = vRows[k] + 3 * x;
        EdgeCoefficients(*pGains, vOld, pWeights, vPixels, n, nMaxGain, pCoefs + x * n);
    }
}

// Rewrites the weights and, if pCoefs is not null, fills the coefficients of the start level.
bool RewriteStart(const StartLevel& start, const GhostEmbedParams& params, const DisplayCurve& curve, CImage& weights,
                  CShortImage* pCoefs)
{
    HeapBuffer<EdgeGains> gains;
    if (pCoefs != nullptr) {
        if (!gains.Allocate(1) || !pCoefs->AllocateDim(weights.nWidth, weights.nHeight, weights.nDim)) return false;
        pCoefs->nRangeMax = kWeightOne;
        pCoefs->nRangeMin = 0;
        FillEdgeGains(gains[0], params.nRatio, start.nExposureNum, curve);
    }
    ShareRows(weights.nHeight, weights.RowSamples(), [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            RewriteRow(start, y, gains.Data(), params.nMaxCompensateGain, params.DeGhostStrength, weights.Row(y),
                       pCoefs != nullptr ? pCoefs->Row(y) : nullptr);
        }
    });
    return true;
}

}  // namespace

void LimitDeghostLevels(int nTotalLevels, GhostEmbedParams& params, EdgeCompensateParams& fusion)
{
    const int nLast = Clamp(nTotalLevels, 1, kMaxLevels) - 1;
    fusion.nMinDeghostLevel = std::min(fusion.nMinDeghostLevel, nLast);
    fusion.nMaxDeghostLevel = std::max(std::min(fusion.nMaxDeghostLevel, nLast), fusion.nMinDeghostLevel);
    params.nStartDeghostLevel = Clamp(params.nStartDeghostLevel, fusion.nMinDeghostLevel, fusion.nMaxDeghostLevel);
}

GhostEmbedding GhostEmbeddingIntoWeight(const CImage& ghostMap, const WorkBurst& burst, const EmbedRules& rules,
                                        const StageDumps& dumps, CImage* vWeights, CShortImage* vCoefs,
                                        CShortImage* pShares)
{
    const GhostEmbedParams& params = rules.embed;
    const int nMin = rules.edges.nMinDeghostLevel, nMax = rules.edges.nMaxDeghostLevel;
    const int nStart = params.nStartDeghostLevel;
    if (!IsBurst(burst) || !LevelsFit(vWeights, burst.nExposureNum, nMin, nStart, nMax)) return GhostEmbedding::kFailed;
    CImage& weights = vWeights[nStart];
    StartLevel start;
    start.nExposureNum = burst.nExposureNum;
    start.nReference = burst.nReference;
    if (!ReduceToStart(ghostMap, burst.vFrames, weights, nStart, rules.pyramid, start)) return GhostEmbedding::kFailed;
    for (int k = 0; dumps && k < start.nExposureNum; ++k) DumpStartFrame(start.vFrames[k], k);
    if (!LabelGhosts(params, dumps, start)) return GhostEmbedding::kFailed;
    const GhostEmbedding task = JudgeGhosts(start, params);
    if (task == GhostEmbedding::kNone) return task;

    CShortImage* pCoefs = rules.edges.bEdgeCompensateEnable ? vCoefs + nStart : nullptr;
    if (!ShareStart(task, weights, params, dumps, start) ||
        !RewriteStart(start, params, rules.curve, weights, pCoefs)) {
        return GhostEmbedding::kFailed;
    }
    if (pShares != nullptr) pShares->Swap(start.shares);
    if (pCoefs != nullptr && !CarryToLevels(vCoefs, vWeights, nMin, nStart, nMax, rules.pyramid)) {
        return GhostEmbedding::kFailed;
    }
    if (dumps) DumpEdgeCoefs(vCoefs, nMin, nMax);
    return CarryToLevels(vWeights, vWeights, nMin, nStart, nMax, rules.pyramid) ? task : GhostEmbedding::kFailed;
}

}  // namespace vkr
