#include "fusion/blend_weighted.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "fusion/blend_weighted.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include "primitives/quotient-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

// The lanes of d from x on.
template <class D>
HWY_INLINE void SumLanes(D d, BlendWeights& weights, int x)
{
    const hn::Rebind<uint8_t, D> d8;
    auto sum = hn::PromoteTo(d, hn::LoadU(d8, weights.vPlanes[0] + x));
    for (int k = 1; k < weights.nExposureNum; ++k) {
        sum = hn::Add(sum, hn::PromoteTo(d, hn::LoadU(d8, weights.vPlanes[k] + x)));
    }
    hn::StoreU(sum, d, weights.vSums + x);
    hn::StoreU(ReciprocalOf(d, sum), hn::RebindToFloat<D>(), weights.vReciprocals + x);
}

void SumWeights(BlendWeights& weights)
{
    const hn::ScalableTag<int32_t> d;
    const hn::CappedTag<int32_t, 1> dOne;
    const int nLanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + nLanes <= weights.nCount; x += nLanes) SumLanes(d, weights, x);
    for (; x < weights.nCount; ++x) SumLanes(dOne, weights, x);
}

// Sum of weight * sample over the exposures in the lanes of d from x on.
template <class D>
HWY_INLINE hn::Vec<D> WeightedSum(D d, const BlendWeights& weights, const int16_t* const* vPlanes, int x)
{
    const hn::Rebind<int16_t, D> d16;
    const hn::Rebind<uint8_t, D> d8;
    hn::Vec<D> sum = hn::Zero(d);
    for (int k = 0; k < weights.nExposureNum; ++k) {
        const auto weight = hn::PromoteTo(d, hn::LoadU(d8, weights.vPlanes[k] + x));
        sum = hn::Add(sum, hn::Mul(weight, hn::PromoteTo(d, hn::LoadU(d16, vPlanes[k] + x))));
    }
    return sum;
}

// The lanes of d from x on. Sums of three exposures stay below 3 * 255 * 32768 < 2^25, and a mean of 16-bit samples is
// one: inside what SignedQuotientOf promises. A 16-bit accumulator holds the low half of the sum.
template <class D>
HWY_INLINE void BlendLanes(D d, const BlendWeights& weights, const int16_t* const* vPlanes, int16_t* pDst, int x)
{
    const hn::Rebind<int16_t, D> d16;
    auto sum = WeightedSum(d, weights, vPlanes, x);
    const auto divisor = hn::LoadU(d, weights.vSums + x);
    if (weights.nExposureNum != 3) sum = hn::ShiftRight<16>(hn::ShiftLeft<16>(sum));
    const auto reciprocal = hn::LoadU(hn::RebindToFloat<D>(), weights.vReciprocals + x);
    hn::StoreU(hn::DemoteTo(d16, SignedQuotientOf(d, sum, divisor, reciprocal)), d16, pDst + x);
}

void BlendRun(const BlendWeights& weights, const int16_t* const* vPlanes, int16_t* pDst)
{
    const hn::ScalableTag<int32_t> d;
    const hn::CappedTag<int32_t, 1> dOne;
    const int nLanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + nLanes <= weights.nCount; x += nLanes) BlendLanes(d, weights, vPlanes, pDst, x);
    for (; x < weights.nCount; ++x) BlendLanes(dOne, weights, vPlanes, pDst, x);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(SumWeights);
HWY_EXPORT(BlendRun);

void TakeWeights(const uint8_t* pWeights, int nCount, int nExposureNum, BlendWeights& weights)
{
    weights.nCount = nCount;
    weights.nExposureNum = nExposureNum;
    uint8_t* vPlanes[kMaxExposures];
    for (int k = 0; k < nExposureNum; ++k) vPlanes[k] = weights.vPlanes[k];
    SplitPixelRow(pWeights, vPlanes, nCount, nExposureNum);
    HWY_DYNAMIC_DISPATCH(SumWeights)(weights);
}

void BlendWeightedRun(const BlendWeights& weights, const int16_t* const* vPlanes, int16_t* pDst)
{
    HWY_DYNAMIC_DISPATCH(BlendRun)(weights, vPlanes, pDst);
}

int16_t BlendWeightedPixel(const int16_t* pSamples, const uint8_t* pWeights, int nExposureNum)
{
    int32_t nSum = 0, nWeights = 0;
    for (int k = 0; k < nExposureNum; ++k) {
        nSum += pWeights[k] * pSamples[k];
        nWeights += pWeights[k];
    }
    if (nExposureNum != 3) nSum = static_cast<int16_t>(nSum);
    return static_cast<int16_t>(DivOrZero(nSum, nWeights));
}

void BlendWeightedRunScalar(const BlendWeights& weights, const int16_t* const* vPlanes, int16_t* pDst)
{
    for (int x = 0; x < weights.nCount; ++x) {
        int16_t vSamples[kMaxExposures];
        uint8_t vWeights[kMaxExposures];
        for (int k = 0; k < weights.nExposureNum; ++k) {
            vSamples[k] = vPlanes[k][x];
            vWeights[k] = weights.vPlanes[k][x];
        }
        pDst[x] = BlendWeightedPixel(vSamples, vWeights, weights.nExposureNum);
    }
}

}  // namespace vkr
#endif
