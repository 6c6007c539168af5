#include "fusion/laplacian_corrections.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/piecewise_linear.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "fusion/laplacian_corrections.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

void SubtractPlane(const uint8_t* HWY_RESTRICT pLevel, const uint8_t* HWY_RESTRICT pUp, int16_t* HWY_RESTRICT pDetail,
                   int nCount)
{
    for (int x = 0; x < nCount; ++x) pDetail[x] = static_cast<int16_t>(pLevel[x] - pUp[x]);
}

// Gains reach 128 and samples 255, so that the products fit 16 bits.
void GainPlane(const int16_t* HWY_RESTRICT pGains, int16_t* HWY_RESTRICT pDetail, int nCount)
{
    for (int x = 0; x < nCount; ++x) {
        const int16_t nProduct = static_cast<int16_t>(pGains[x] * pDetail[x]);
        const int16_t nBelowZero = static_cast<int16_t>((nProduct >> 15) & 15);
        pDetail[x] = static_cast<int16_t>(static_cast<int16_t>(nProduct + nBelowZero) >> 4);
    }
}

void LumaOfPlanes(const uint8_t* HWY_RESTRICT pB, const uint8_t* HWY_RESTRICT pG, const uint8_t* HWY_RESTRICT pR,
                  uint8_t* HWY_RESTRICT pLuma, int nCount)
{
    for (int x = 0; x < nCount; ++x) pLuma[x] = static_cast<uint8_t>((9 * pG[x] + 2 * pB[x] + 5 * pR[x] + 8) >> 4);
}

void CompensatePlane(const int16_t* HWY_RESTRICT pCoefs, int16_t* HWY_RESTRICT pDetail, int nCount)
{
    for (int x = 0; x < nCount; ++x) {
        const int32_t nProduct = pCoefs[x] * pDetail[x];
        pDetail[x] = static_cast<int16_t>((nProduct + ((nProduct >> 31) & 127)) >> 7);
    }
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

namespace {
constexpr int kListLevels = 8;  // entries of the lists by level
}  // namespace

HWY_EXPORT(SubtractPlane);
HWY_EXPORT(GainPlane);
HWY_EXPORT(LumaOfPlanes);
HWY_EXPORT(CompensatePlane);

void SubtractUp(const uint8_t* pLevel, const uint8_t* pUp, int nCount, LaplacianRun& run)
{
    uint8_t vLevel[3][kRunPixels];
    uint8_t* const vLevelPlanes[3] = {vLevel[0], vLevel[1], vLevel[2]};
    uint8_t* const vUpPlanes[3] = {run.vUp[0], run.vUp[1], run.vUp[2]};
    SplitPixelRow(pLevel, vLevelPlanes, nCount, 3);
    SplitPixelRow(pUp, vUpPlanes, nCount, 3);
    run.nCount = nCount;
    for (int c = 0; c < 3; ++c) HWY_DYNAMIC_DISPATCH(SubtractPlane)(vLevel[c], run.vUp[c], run.vDetail[c], nCount);
}

void SubtractUpScalar(const uint8_t* pLevel, const uint8_t* pUp, int nCount, LaplacianRun& run)
{
    run.nCount = nCount;
    for (int i = 0; i < 3 * nCount; ++i) {
        run.vUp[i % 3][i / 3] = pUp[i];
        run.vDetail[i % 3][i / 3] = static_cast<int16_t>(pLevel[i] - pUp[i]);
    }
}

void FillSharpenTable(SharpenTable& table, const FusionParams& params)
{
    for (int i = 0; i < 512; ++i) {
        table.vGains[i] = PiecewiseLinear(params.nSharpenYThList, params.nSharpenYWList, 8, i);
    }
}

bool FillDetailGains(DetailGains& gains, const SharpenTable& table, int nLevel, const FusionParams& params)
{
    if (!params.bShadowDetailEnhanceEnable || nLevel >= kListLevels || params.nLevelSharpen[nLevel] == 0) return false;
    for (int i = 0; i < 256; ++i) {
        gains.vByLuma[i] = static_cast<int16_t>(((params.nLevelSharpen[nLevel] * (table.vGains[i] - 16)) >> 4) + 16);
    }
    return true;
}

void ApplyShadowDetailBoost(const DetailGains& gains, LaplacianRun& run)
{
    uint8_t vLuma[kRunPixels];
    int16_t vGains[kRunPixels];
    HWY_DYNAMIC_DISPATCH(LumaOfPlanes)(run.vUp[0], run.vUp[1], run.vUp[2], vLuma, run.nCount);
    for (int x = 0; x < run.nCount; ++x) vGains[x] = gains.vByLuma[vLuma[x]];
    for (int c = 0; c < 3; ++c) HWY_DYNAMIC_DISPATCH(GainPlane)(vGains, run.vDetail[c], run.nCount);
}

void ApplyShadowDetailBoostScalar(const DetailGains& gains, LaplacianRun& run)
{
    for (int x = 0; x < run.nCount; ++x) {
        const int nLuma = LumaOfBgr(run.vUp[0][x], run.vUp[1][x], run.vUp[2][x]);
        for (auto& vDetail : run.vDetail) vDetail[x] = static_cast<int16_t>(gains.vByLuma[nLuma] * vDetail[x] / 16);
    }
}

void FillHighlightGains(HighlightGains& gains, int nLevel, const FusionParams& params)
{
    const int nEntry = std::min(nLevel, kListLevels - 1);
    const int64_t nLowest = params.nExtendHLSatuThre[nEntry];
    const int64_t nSlope = params.nExtendHLSlope[nEntry];
    gains.nLowest = static_cast<int32_t>(nLowest);
    for (int v = 0; v < 256; ++v) {
        const int64_t nLifted = DivOrZero64((v - nLowest) * nSlope, 256 - nLowest) + nLowest;
        gains.vBySmallest[v] = v < nLowest ? 0 : static_cast<int32_t>(DivOrZero64(nLifted * 65536, v));
    }
}

void ApplyExtendHL(const HighlightGains& gains, LaplacianRun& run)
{
    for (int x = 0; x < run.nCount; ++x) {
        const int nSmallest = std::min({run.vUp[0][x], run.vUp[1][x], run.vUp[2][x]});
        if (nSmallest < gains.nLowest) continue;
        const int64_t nGain = gains.vBySmallest[nSmallest];
        for (auto& vDetail : run.vDetail) vDetail[x] = static_cast<int16_t>((nGain * vDetail[x]) >> 16);
    }
}

void ApplyEdgeCompensation(const int16_t* pCoefs, int nStep, LaplacianRun& run)
{
    int16_t vCoefs[kRunPixels];
    for (int x = 0; x < run.nCount; ++x) vCoefs[x] = pCoefs[x * nStep];
    for (int c = 0; c < 3; ++c) HWY_DYNAMIC_DISPATCH(CompensatePlane)(vCoefs, run.vDetail[c], run.nCount);
}

void ApplyEdgeCompensationScalar(const int16_t* pCoefs, int nStep, LaplacianRun& run)
{
    for (int x = 0; x < run.nCount; ++x) {
        for (auto& vDetail : run.vDetail) vDetail[x] = static_cast<int16_t>(pCoefs[x * nStep] * vDetail[x] / 128);
    }
}

}  // namespace vkr
#endif
