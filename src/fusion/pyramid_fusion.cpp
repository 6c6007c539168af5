#include "fusion/pyramid_fusion.h"

#include <algorithm>
#include <cstring>

#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"
#include "fusion/blend_weighted.h"
#include "fusion/fusion_dump.h"
#include "fusion/fusion_levels.h"
#include "fusion/laplacian_corrections.h"
#include "primitives/gaussian_pyramid.h"
#include "primitives/share_rows.h"

namespace vkr {

namespace {

// What one level's detail goes through before it is blended.
struct LevelCorrections {
    bool bBoost, bExtendHL, bCompensate;
    DetailGains detailGains;
    HighlightGains highlightGains;
    const CShortImage* pCoefs;
};

// The highlight gain is for a single exposure alone; three fill their highlights from each other.
void PrepareCorrections(const FusionLevels& levels, int nLevel, const CShortImage& coefs, const SharpenTable& table,
                        const FusionParams& params, LevelCorrections& corrections)
{
    corrections.bBoost = FillDetailGains(corrections.detailGains, table, nLevel, params);
    corrections.bExtendHL = params.bExtendHL && levels.ExposureNum() == 1;
    if (corrections.bExtendHL) FillHighlightGains(corrections.highlightGains, nLevel, params);
    corrections.bCompensate = params.bEdgeCompensateEnable && params.nMinDeghostLevel <= nLevel &&
                              nLevel <= params.nMaxDeghostLevel && !coefs.Empty() &&
                              coefs.nDim == levels.ExposureNum() && coefs.nWidth == levels.Width() &&
                              coefs.nHeight == levels.Height();
    corrections.pCoefs = &coefs;
}

bool IsTopLevel(const FusionLevels& levels, int nLevel, const PyramidParams& pyramid)
{
    return std::min(levels.Width(), levels.Height()) <= 1 << pyramid.nTopLevel || nLevel + 1 == kMaxLevels;
}

bool WeightsFit(const FusionLevels& levels, const CImage& weights)
{
    return !weights.Empty() && weights.nDim == levels.ExposureNum() && weights.nWidth == levels.Width() &&
           weights.nHeight == levels.Height();
}

bool AllocateFused(const FusionLevels& levels, CShortImage& image)
{
    if (!image.AllocateDim(levels.Width(), levels.Height(), 3)) return false;
    image.nRangeMax = 255;
    image.nRangeMin = 0;
    return true;
}

// Blends the three channels of a run into interleaved pixels. vChannels: a plane per exposure, by channel.
void BlendPixels(const BlendWeights& weights, const int16_t* const (*vChannels)[kMaxExposures], int16_t* pDst)
{
    int16_t vBlend[3][kRunPixels];
    for (int c = 0; c < 3; ++c) BlendWeightedRun(weights, vChannels[c], vBlend[c]);
    const int16_t* const vPlanes[3] = {vBlend[0], vBlend[1], vBlend[2]};
    JoinPixelRow(vPlanes, pDst, weights.nCount);
}

// One run of pixels of a Laplacian level, from x on in row y: every exposure's detail, corrected, then their blend.
void FuseDetailRun(const FusionLevels& levels, const uint8_t* const* vUpRows, const CImage& weights,
                   const LevelCorrections& corrections, int x, int y, int nCount, int16_t* pDst)
{
    const int nExposureNum = levels.ExposureNum();
    LaplacianRun vRuns[kMaxExposures];
    const int16_t* vChannels[3][kMaxExposures];
    for (int k = 0; k < nExposureNum; ++k) {
        LaplacianRun& run = vRuns[k];
        SubtractUp(levels.AtWork(k).Row(y) + 3 * x, vUpRows[k] + 3 * x, nCount, run);
        if (corrections.bBoost) ApplyShadowDetailBoost(corrections.detailGains, run);
        if (corrections.bExtendHL) ApplyExtendHL(corrections.highlightGains, run);
        if (corrections.bCompensate) {
            ApplyEdgeCompensation(corrections.pCoefs->Row(y) + x * nExposureNum + k, nExposureNum, run);
        }
        for (int c = 0; c < 3; ++c) vChannels[c][k] = run.vDetail[c];
    }
    BlendWeights blend;
    TakeWeights(weights.Row(y) + x * nExposureNum, nCount, nExposureNum, blend);
    BlendPixels(blend, vChannels, pDst + 3 * x);
}

void FuseDetailRows(FusionLevels& levels, const CImage& weights, const LevelCorrections& corrections,
                    CShortImage& detail, RowBlock rows)
{
    DoubledRows::Reader vReaders[kMaxExposures];
    const uint8_t* vUpRows[kMaxExposures];
    for (int k = 0; k < levels.ExposureNum(); ++k) vReaders[k].Open(levels.m_vUp[k], rows.nIndex);
    for (int y = rows.nBegin; y < rows.nEnd; ++y) {
        for (int k = 0; k < levels.ExposureNum(); ++k) vUpRows[k] = vReaders[k].Row(y);
        for (int x = 0; x < detail.nWidth; x += kRunPixels) {
            const int nCount = std::min(kRunPixels, detail.nWidth - x);
            FuseDetailRun(levels, vUpRows, weights, corrections, x, y, nCount, detail.Row(y));
        }
    }
}

// Level at work minus the doubled next coarser one, corrected and blended. The doubled picture of an odd level is one
// larger; its last column and row are never read.
bool FuseLaplacianLevel(FusionLevels& levels, int nLevel, const CImage& weights, const LevelCorrections& corrections,
                        const PyramidParams& pyramid)
{
    if (!WeightsFit(levels, weights) || !AllocateFused(levels, levels.m_vDetail[nLevel])) return false;
    for (int k = 0; k < levels.ExposureNum(); ++k) {
        if (!levels.m_vUp[k].Open(levels.Coarser(k), pyramid.bPyramidFilter, pyramid.bUpScaleImageDither, MaxTeam())) {
            return false;
        }
    }
    ShareRows(levels.Height(), levels.Width() * 3 * levels.ExposureNum(),
              [&](RowBlock rows) { FuseDetailRows(levels, weights, corrections, levels.m_vDetail[nLevel], rows); });
    return true;
}

void FuseTopRun(const FusionLevels& levels, const CImage& weights, int x, int y, int nCount, int16_t* pDst)
{
    const int nExposureNum = levels.ExposureNum();
    int16_t vSamples[kMaxExposures][3][kRunPixels];
    const int16_t* vChannels[3][kMaxExposures];
    for (int k = 0; k < nExposureNum; ++k) {
        const uint8_t* pPixels = levels.AtWork(k).Row(y) + 3 * x;
        for (int c = 0; c < 3; ++c) {
            for (int i = 0; i < nCount; ++i) vSamples[k][c][i] = pPixels[3 * i + c];
            vChannels[c][k] = vSamples[k][c];
        }
    }
    BlendWeights blend;
    TakeWeights(weights.Row(y) + x * nExposureNum, nCount, nExposureNum, blend);
    BlendPixels(blend, vChannels, pDst + 3 * x);
}

bool FuseTopLevel(FusionLevels& levels, const CImage& weights)
{
    if (!WeightsFit(levels, weights) || !AllocateFused(levels, levels.m_Fused)) return false;
    ShareRows(levels.Height(), levels.Width() * 3 * levels.ExposureNum(), [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            for (int x = 0; x < levels.Width(); x += kRunPixels) {
                FuseTopRun(levels, weights, x, y, std::min(kRunPixels, levels.Width() - x), levels.m_Fused.Row(y));
            }
        }
    });
    return true;
}

// The doubled picture covers the finer level; of an odd one it is one larger and is cropped by its row length.
bool DoubleFused(FusionLevels& levels, const CShortImage& detail, const PyramidParams& pyramid)
{
    const CShortImage& up = levels.m_FusedUp;
    return DoubleShort(levels.m_Fused, levels.m_FusedUp, pyramid.bPyramidFilter, pyramid.bUpScaleImageDither) &&
           up.nWidth >= detail.nWidth && up.nHeight >= detail.nHeight && up.nDim == detail.nDim;
}

bool AddFusedDetail(FusionLevels& levels, const CShortImage& detail)
{
    CShortImage& fused = levels.m_Fused;
    if (!fused.AllocateDim(detail.nWidth, detail.nHeight, detail.nDim)) return false;
    CGaussianPyramid2::AddShort(levels.m_FusedUp.pData, detail.pData, fused.pData, detail.nWidth, detail.nHeight,
                                levels.m_FusedUp.nWidth, detail.nDim);
    return true;
}

// Low-pass part and finest detail of a row, pixel by pixel. Four samples at once, one too many, which the next part
// overwrites; not so behind the last pixel.
void MergeRow(const int16_t* pUp, const int16_t* pDetail, int16_t* pDst, int nWidth)
{
    for (int x = 0; x + 1 < nWidth; ++x) {
        std::memcpy(pDst + 6 * x, pUp + 3 * x, 4 * sizeof(int16_t));
        std::memcpy(pDst + 6 * x + 3, pDetail + 3 * x, 4 * sizeof(int16_t));
    }
    std::memcpy(pDst + 6 * (nWidth - 1), pUp + 3 * (nWidth - 1), 3 * sizeof(int16_t));
    std::memcpy(pDst + 6 * (nWidth - 1) + 3, pDetail + 3 * (nWidth - 1), 3 * sizeof(int16_t));
}

// Both parts side by side: the tone stages treat them apart and add them.
bool Merge6Channel(const CShortImage& up, const CShortImage& detail, CShortImage& fused)
{
    if (!fused.AllocateDim(detail.nWidth, detail.nHeight, 6)) return false;
    fused.nRangeMax = detail.nRangeMax;
    fused.nRangeMin = detail.nRangeMin;
    ShareRows(detail.nHeight, fused.RowSamples(), [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) MergeRow(up.Row(y), detail.Row(y), fused.Row(y), detail.nWidth);
    });
    return true;
}

// Finest first: each level is halved, its detail fused, then the halved one is next. Returns the top level, -1 on
// failure.
int FuseDetailLevels(FusionLevels& levels, const CImage* vWeights, const CShortImage* vCoefs,
                     const FusionParams& params, const PyramidParams& pyramid)
{
    SharpenTable table;
    FillSharpenTable(table, params);
    for (int i = 0;; ++i) {
        HdrPrintf("Build Pyramid: Level%d size=[%dx%d]\n", i, levels.Width(), levels.Height());
        if (IsTopLevel(levels, i, pyramid)) {
            HdrPrintf("\n");
            return i;
        }
        LevelCorrections corrections;
        PrepareCorrections(levels, i, vCoefs[i], table, params, corrections);
        if (!levels.HalveLevel(pyramid)) return -1;
        if (!FuseLaplacianLevel(levels, i, vWeights[i], corrections, pyramid)) return -1;
        levels.GoCoarser();
        HdrPrintf("\n");
    }
}

void LogFusedLevel(int nLevel, const CShortImage& image)
{
    HdrPrintf(" FusionPyramid: Level%d size=[%dX%d]\n ", nLevel, image.nWidth, image.nHeight);
}

// Coarsest first: the fused picture is doubled and takes the detail of the next finer level, down to level 1; of level
// 0 both go into the result unadded.
bool Collapse(FusionLevels& levels, int nTop, const PyramidParams& pyramid, const StageDumps& dumps, CShortImage& fused)
{
    for (int i = nTop - 1; i >= 0; --i) {
        CShortImage& detail = levels.m_vDetail[i];
        if (!DoubleFused(levels, detail, pyramid)) return false;
        if (i == 0) {
            if (dumps) DumpFinestLevel(levels.m_FusedUp, detail);
            if (!Merge6Channel(levels.m_FusedUp, detail, fused)) return false;
            LogFusedLevel(i, fused);
            break;
        }
        if (!AddFusedDetail(levels, detail)) return false;
        detail.Release();
        LogFusedLevel(i, levels.m_Fused);
        if (dumps) DumpFused(levels.m_Fused, i);
        if (dumps) DumpFusedUp(levels.m_FusedUp, i);
    }
    return true;
}

}  // namespace

bool PyramidFusion(const WeighedBurst& burst, const FusionParams& params, const PyramidParams& pyramid,
                   const StageDumps& dumps, CShortImage& fused)
{
    FusionLevels levels;  // owns every level; gives the buffers back to the pool on every way out
    const bool bTaken = TimedStage("==== ==== ==== PyramidFusion copy Done",
                                   [&] { return levels.TakeFrames(burst.vFrames, burst.nExposureNum); });
    if (!bTaken) return false;
    const int nTop = TimedStage("==== ==== ==== level 16 Done", [&] {
        return FuseDetailLevels(levels, burst.vWeights, burst.vCoefs, params, pyramid);
    });
    if (nTop < 0) return false;
    HdrPrintf("PyramidLevel=%d\n", nTop + 1);

    GoalTimer timer("==== ==== ==== Fusion and Merge6Channel Done");  // the goal is the top level
    if (!FuseTopLevel(levels, burst.vWeights[nTop])) return false;
    levels.DropExposures();
    LogFusedLevel(nTop, levels.m_Fused);
    if (dumps) DumpFused(levels.m_Fused, nTop);
    const bool bDone = Collapse(levels, nTop, pyramid, dumps, fused);
    timer.Reached();
    return bDone;
}

}  // namespace vkr
