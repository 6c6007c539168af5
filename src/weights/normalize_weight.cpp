#include "weights/normalize_weight.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "weights/normalize_runs.h"

namespace vkr {

namespace {

// An exposure and its weight; -1 and -1 while there is none.
struct Pick {
    int32_t nIndex = -1;
    int32_t nWeight = -1;
};

uint8_t LowByte(int32_t v)
{
    return static_cast<uint8_t>(v & 255);
}

int32_t Share(int32_t nWeight, int32_t nSum)
{
    return DivOrZero(kWeightOne * nWeight + (nSum >> 1), nSum);
}

// Shares of 128, and the two picks. A later exposure becomes the second pick when its weight exceeds the INDEX of the
// present one, not its weight: the last exposure nearly always wins. Results rest on it.
void ShareOut(uint8_t* pWeight, int nExposureNum, int32_t nSum, Pick& first, Pick& second)
{
    for (int k = 0; k < nExposureNum; ++k) {
        const int32_t nWeight = std::min<int32_t>(LowByte(Share(pWeight[k], nSum)), kWeightOne);
        pWeight[k] = static_cast<uint8_t>(nWeight);
        if (nWeight > first.nWeight) {
            second = first;
            first = {k, nWeight};
        } else if (nWeight > second.nIndex) {
            second = {k, nWeight};
        }
    }
}

// The first pick takes what the others leave, and they leave a third at least.
void LimitOthers(uint8_t* pWeight, int nExposureNum, const Pick& first)
{
    int32_t nOthers = 0;
    for (int k = 0; k < nExposureNum; ++k) nOthers += k == first.nIndex ? 0 : pWeight[k];
    pWeight[first.nIndex] = static_cast<uint8_t>(kWeightOne - std::min(nOthers, kMostOfOthers));
}

void KeepTwoPicks(uint8_t* pWeight, int nExposureNum, const Pick& first, const Pick& second)
{
    if (second.nIndex < 0) return;  // a single exposure
    const uint8_t nSecond = LowByte(Share(pWeight[second.nIndex], first.nWeight + second.nWeight));
    std::fill_n(pWeight, nExposureNum, uint8_t{0});
    pWeight[second.nIndex] = nSecond;
    pWeight[first.nIndex] = LowByte(kWeightOne - nSecond);
}

}  // namespace

void NormalizeWeight(const int32_t* pRaw, uint8_t* pWeight, int nExposureNum, const WeightParams& params)
{
    int32_t nSum = 0;
    for (int k = 0; k < nExposureNum; ++k) {
        pWeight[k] = LowByte(pRaw[k]);
        nSum += pRaw[k];
    }
    if (!params.bNormalizeWeightEnable || nExposureNum < 1) return;
    Pick first, second;
    ShareOut(pWeight, nExposureNum, nSum, first, second);
    if (first.nWeight > params.nDominateWTh) {
        std::fill_n(pWeight, nExposureNum, uint8_t{0});
        pWeight[first.nIndex] = kWeightOne;
        return;
    }
    LimitOthers(pWeight, nExposureNum, first);
    if (params.bMax2ExpWeightEnable) KeepTwoPicks(pWeight, nExposureNum, first, second);
}

void NormalizeWeightRun(const uint8_t* const* vRaw, uint8_t* pWeights, int nCount, int nExposureNum,
                        const WeightParams& params)
{
    if (nExposureNum == 3 && params.bNormalizeWeightEnable) {
        NormalizeThreeRun(vRaw, pWeights, nCount, params.nDominateWTh, params.bMax2ExpWeightEnable != 0);
        return;
    }
    NormalizeWeightRunScalar(vRaw, pWeights, nCount, nExposureNum, params);
}

void NormalizeWeightRunScalar(const uint8_t* const* vRaw, uint8_t* pWeights, int nCount, int nExposureNum,
                              const WeightParams& params)
{
    for (int x = 0; x < nCount; ++x) {
        int32_t vPixel[kMaxExposures];
        for (int k = 0; k < nExposureNum; ++k) vPixel[k] = vRaw[k][x];
        NormalizeWeight(vPixel, pWeights + x * nExposureNum, nExposureNum, params);
    }
}

}  // namespace vkr
