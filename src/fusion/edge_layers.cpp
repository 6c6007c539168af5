#include "fusion/edge_layers.h"

#include <algorithm>

#include "foundation/parallel_rows.h"
#include "fusion/blend_weighted.h"
#include "primitives/doubled_rows.h"

namespace vkr {

namespace {

bool LayersFit(const CShortImage* vLayers, int nExposureNum, int nWidth, int nHeight)
{
    return std::all_of(vLayers, vLayers + nExposureNum, [&](const CShortImage& layer) {
        return !layer.Empty() && layer.nDim == 1 && layer.nWidth == nWidth && layer.nHeight == nHeight;
    });
}

void BlendLayerRow(const CShortImage* vLayers, const uint8_t* pWeights, int nExposureNum, int y, CShortImage& edge)
{
    for (int x = 0; x < edge.nWidth; x += kRunPixels) {
        BlendWeights weights;
        TakeWeights(pWeights + x * nExposureNum, std::min(kRunPixels, edge.nWidth - x), nExposureNum, weights);
        const int16_t* vPlanes[kMaxExposures];
        for (int k = 0; k < nExposureNum; ++k) vPlanes[k] = vLayers[k].Row(y) + x;
        BlendWeightedRun(weights, vPlanes, edge.Row(y) + x);
    }
}

}  // namespace

bool FuseEdgeLayers(const CImage& level0Weights, const CShortImage* vDetailLayers, int nExposureNum,
                    const PyramidParams& pyramid, CShortImage& edge)
{
    edge.Release();
    if (nExposureNum < 1 || nExposureNum > kMaxExposures || level0Weights.nDim != nExposureNum) return false;
    DoubledRows doubled;
    if (!doubled.Open(level0Weights, pyramid.bPyramidFilter, pyramid.bUpScaleOtherDither, MaxTeam())) return false;
    if (!LayersFit(vDetailLayers, nExposureNum, doubled.Width(), doubled.Height())) return false;
    if (!edge.AllocateDim(doubled.Width(), doubled.Height(), 1)) return false;
    edge.nRangeMax = vDetailLayers[0].nRangeMax;
    edge.nRangeMin = vDetailLayers[0].nRangeMin;
    ParallelRows(edge.nHeight, [&](RowBlock rows) {
        DoubledRows::Reader weightRows;
        weightRows.Open(doubled, rows.nIndex);
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            BlendLayerRow(vDetailLayers, weightRows.Row(y), nExposureNum, y, edge);
        }
    });
    return true;
}

}  // namespace vkr
