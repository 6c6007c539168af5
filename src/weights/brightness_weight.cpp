#include "weights/brightness_weight.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/piecewise_linear.h"

namespace vkr {

namespace {

constexpr int kNodes = 8;
constexpr int kConstantTarget = 128;  // of every exposure, with bConstantBrightnessTargetEnable

// Squared distance to the target. What the neighbours cannot do better costs nothing.
int32_t TargetDistance(int32_t nDiff, int k, int nExposureNum)
{
    if (k == 0 && nDiff > 0) return 0;
    if (k == nExposureNum - 1 && nDiff < 0) return 0;
    return nDiff * nDiff;
}

// Weight of the reference exposure near the face's brightness: nOrdinary fades in towards the window's end, the weight
// of the distance to the face towards its centre. Outside the window nOrdinary stands; a side of width 0 is closed.
int32_t FaceWindowWeight(int32_t nBrightness, int32_t nOrdinary, const WeightParams& params, const FaceAim& face)
{
    const bool bRef = params.bRefDifferentWeightEnable != 0;
    const int32_t nAbove = nBrightness - face.m_FaceIntensity;
    if (nAbove == 0) return BrightnessDiffToWeight(0, bRef, params);
    const int32_t nDistance = nAbove < 0 ? -nAbove : nAbove;
    const int32_t nRange = params.nFaceIntensityRefRange[nAbove < 0 ? 0 : 1];
    if (nDistance >= nRange) return nOrdinary;
    const int32_t nShare = nDistance * 1024 / nRange;  // Q10, 0 at the face .. 1024 at the end
    const int32_t nNear = BrightnessDiffToWeight(nDistance * nDistance, bRef, params);
    return (nOrdinary * nShare + nNear * (1024 - nShare)) >> 10;
}

// By value, unlike std::max: loops over them are vectorised.
uint8_t Larger(uint8_t a, uint8_t b)
{
    return a > b ? a : b;
}
uint8_t Smaller(uint8_t a, uint8_t b)
{
    return a < b ? a : b;
}

}  // namespace

int32_t BrightnessDiffToWeight(int32_t nDiff, bool bRef, const WeightParams& params)
{
    const int32_t* pX = bRef ? params.pBrightnessDiffListRef : params.pBrightnessDiffList;
    const int32_t* pY = bRef ? params.pBrightnessWListRef : params.pBrightnessWList;
    return Clamp(PiecewiseLinear(pX, pY, kNodes, nDiff), params.m_nMinFusionWeight, params.m_nMaxFusionWeight);
}

void BrightnessWeightOfPixel(const int32_t* pBrightness, int32_t* pWeight, int nExposureNum, int nReference,
                             const WeightParams& params, const FaceAim& face)
{
    for (int k = 0; k < nExposureNum; ++k) {
        const int32_t nTarget =
            params.bConstantBrightnessTargetEnable ? kConstantTarget : params.nGoodBrightnessTarget[k];
        const int32_t nDistance = TargetDistance(pBrightness[k] - nTarget, k, nExposureNum);
        const bool bRef = k == nReference;
        pWeight[k] = BrightnessDiffToWeight(nDistance, bRef && params.bRefDifferentWeightEnable, params);
        if (bRef && face.bAIMask && face.m_FaceIntensity != nTarget) {
            pWeight[k] = FaceWindowWeight(pBrightness[k], pWeight[k], params, face);
        }
    }
}

void FillBrightnessTable(BrightnessTable& table, int nExposureNum, int nReference, const WeightParams& params,
                         const FaceAim& face)
{
    for (int g = 0; g < 256; ++g) {
        int32_t vBrightness[kMaxExposures], vWeights[kMaxExposures];
        std::fill_n(vBrightness, kMaxExposures, g);
        BrightnessWeightOfPixel(vBrightness, vWeights, nExposureNum, nReference, params, face);
        for (int k = 0; k < nExposureNum; ++k) table.vRows[k][g] = static_cast<uint8_t>(vWeights[k]);
    }
}

void BrightnessRun(int32_t nFusionWeightSelect, const uint8_t* pBgr, uint8_t* pBrightness, int nCount)
{
    uint8_t b[kRunPixels], g[kRunPixels], r[kRunPixels];
    uint8_t* const vPlanes[3] = {b, g, r};
    SplitPixelRow(pBgr, vPlanes, nCount, 3);
    if (nFusionWeightSelect == kLumaOfPixel) {
        for (int x = 0; x < nCount; ++x) pBrightness[x] = static_cast<uint8_t>(LumaOfBgr(b[x], g[x], r[x]));
    } else if (nFusionWeightSelect == kLargestSample) {
        for (int x = 0; x < nCount; ++x) pBrightness[x] = Larger(Larger(b[x], g[x]), r[x]);
    } else {
        for (int x = 0; x < nCount; ++x) pBrightness[x] = Smaller(Smaller(b[x], g[x]), r[x]);
    }
}

}  // namespace vkr
