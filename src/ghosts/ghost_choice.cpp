#include "ghosts/ghost_choice.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/log.h"

namespace vkr {

namespace {

constexpr int kShareShift = 14;  // shares of an area are in 1/16384

bool IsSaturated(const uint8_t* pPixel, const GhostEmbedParams& params)
{
    const auto [nLeast, nMost] = std::minmax({pPixel[0], pPixel[1], pPixel[2]});
    return (params.bSaturationMethod ? nMost : nLeast) > params.nSatuValueTh;
}

void AddPixel(RegionStats& stats, int k, int nWeight, bool bSaturated, bool bEdge)
{
    stats.vWeightSum[k] += nWeight;
    stats.vSaturated[k] += bSaturated ? 1 : 0;
    if (!bEdge) return;
    stats.vEdgeWeightSum[k] += nWeight;
    stats.vEdgeSaturated[k] += bSaturated ? 1 : 0;
}

// Mean weight of the region, Q7. The edge takes part with nEdgeShare sixteenths: a region that is to join its
// surroundings should choose by what it touches as well. 0 for an area or an edge of no pixels.
int64_t MeanWeight(const RegionStats& stats, int k, int nEdgeShare)
{
    const int64_t nMean = DivOrZero64(stats.vWeightSum[k], stats.nArea);
    const int64_t nEdgeMean = DivOrZero64(stats.vEdgeWeightSum[k], stats.nEdgeLen);
    return (nMean * (16 - nEdgeShare) + nEdgeMean * nEdgeShare + 8) >> 4;
}

int FirstChoice(const RegionStats& stats, int nExposureNum, const GhostEmbedParams& params)
{
    int64_t vMean[kMaxExposures] = {};
    for (int k = 0; k < nExposureNum; ++k) vMean[k] = MeanWeight(stats, k, params.nRegionEdgeWeightW);
    const auto Nearer = [](int64_t a, int64_t b) { return std::llabs(a - kWeightOne) < std::llabs(b - kWeightOne); };
    const int64_t* pChosen = params.bMaxMeanWeightFill ? std::max_element(vMean, vMean + nExposureNum)
                                                       : std::min_element(vMean, vMean + nExposureNum, Nearer);
    return static_cast<int>(pChosen - vMean);
}

// Mean weights per exposure.
void LogMeans(const char* pName, int nRegion, const int64_t* pSums, int32_t nCount, int nExposureNum)
{
    HdrLog("%s %d: ", pName, nRegion);
    for (int k = 0; k < nExposureNum; ++k) HdrLog("%3d ", static_cast<int>(DivOrZero64(pSums[k], nCount)));
}

void LogCount(const char* pName, int nRegion, int32_t nCount)
{
    HdrLog("%s %d: ", pName, nRegion);
    HdrLog("%3d ", nCount);
}

void LogStats(const RegionStats& stats, int nExposureNum, int nRegion)
{
    LogMeans("Cluster WeightMean", nRegion, stats.vWeightSum, stats.nArea, nExposureNum);
    LogCount("nGhostClusters", nRegion, stats.nArea);
    LogMeans("Cluster EdgeWeightMean", nRegion, stats.vEdgeWeightSum, stats.nEdgeLen, nExposureNum);
    LogCount("m_pEdgeLen", nRegion, stats.nEdgeLen);
}

void LogChosen(int nChosen, int nExposureNum, int nRegion)
{
    HdrLog("Cluster WeightMean Mod%d: ", nRegion);
    for (int k = 0; k < nExposureNum; ++k) HdrLog("%3d ", k == nChosen ? kWeightOne : 0);
}

}  // namespace

void MeasureRegions(const CLabelImage& labels, const CLabelImage& edges, const CImage& weights, const CImage* vFrames,
                    int nExposureNum, const GhostEmbedParams& params, RegionStats* pStats)
{
    for (int y = 0; y < labels.nHeight; ++y) {
        const int32_t* pLabels = labels.Row(y);
        const int32_t* pEdges = edges.Row(y);
        const uint8_t* pWeights = weights.Row(y);
        const uint8_t* vRows[kMaxExposures];
        for (int k = 0; k < nExposureNum; ++k) vRows[k] = vFrames[k].Row(y);
        for (int x = 0; x < labels.nWidth; ++x, pWeights += nExposureNum) {
            if (pLabels[x] == 0) continue;
            RegionStats& stats = pStats[pLabels[x] - 1];
            for (int k = 0; k < nExposureNum; ++k) {
                AddPixel(stats, k, pWeights[k], IsSaturated(vRows[k] + 3 * x, params), pEdges[x] != 0);
            }
        }
    }
}

int ChooseExposure(const RegionStats& stats, int nExposureNum, const GhostEmbedParams& params, int nRegion,
                   int nMinArea)
{
    const int64_t nLimit = (int64_t{stats.nArea} * params.nGhostRegionSaturatePerTh) >> kShareShift;
    const int64_t nEdgeLimit = (int64_t{stats.nEdgeLen} * params.nGhostEdgeSaturatePerTh) >> kShareShift;
    const int nFirst = FirstChoice(stats, nExposureNum, params);
    const int nDarkest = std::max(nFirst - params.nMaxDecrease, 0);
    int s = nFirst;
    while (s > nDarkest && (stats.vSaturated[s] > nLimit || stats.vEdgeSaturated[s] > nEdgeLimit)) --s;

    LogStats(stats, nExposureNum, nRegion);
    HdrLog("Cluster %d, Area=%d, AreaTh=%d, Edge=%d, Th=[%d,%d]\n", nRegion, stats.nArea, nMinArea, stats.nEdgeLen,
           static_cast<int>(nLimit), static_cast<int>(nEdgeLimit));
    HdrLog("Cluster: %d: %d -> %d , Region=[%d->%d], Edge=[%d->%d]\n", nRegion, nFirst, s, stats.vSaturated[nFirst],
           stats.vSaturated[s], stats.vEdgeSaturated[nFirst], stats.vEdgeSaturated[s]);
    LogChosen(s, nExposureNum, nRegion);
    return s;
}

}  // namespace vkr
