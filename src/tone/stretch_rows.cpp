#include "tone/stretch_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/stretch_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include <algorithm>

#include "foundation/fixed_point.h"

#ifndef VKR_STRETCH_ROWS_PATTERN
#define VKR_STRETCH_ROWS_PATTERN
namespace vkr {

// Gains of a run of whole pixels: what a sample loses, how far it counts, its factor.
struct StretchPattern {
    static constexpr int kRun = 48;  // samples: eight pixels of six, a multiple of every vector width
    int32_t vOffset[kRun], vLimit[kRun], vFactor[kRun];
};

}  // namespace vkr
#endif

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// n <= kRun products; the compiler makes the vectors.
inline void RunProducts(const int16_t* pFused, int32_t* pProducts, int n, const StretchPattern& pattern)
{
    for (int i = 0; i < n; ++i) {
        const int32_t nLimit = pattern.vLimit[i];
        const int32_t v = std::min(std::max(pFused[i] - pattern.vOffset[i], -nLimit), nLimit);
        pProducts[i] = v * pattern.vFactor[i];
    }
}

void PatternProducts(const int16_t* pFused, int32_t* pProducts, int nSamples, const StretchPattern& pattern)
{
    constexpr int kRun = StretchPattern::kRun;
    int i = 0;
    for (; i + kRun <= nSamples; i += kRun) RunProducts(pFused + i, pProducts + i, kRun, pattern);
    RunProducts(pFused + i, pProducts + i, nSamples - i, pattern);
}

#if HWY_TARGET == HWY_SCALAR  // no vectors of four
int CarryPixels(const int32_t*, uint8_t*, int, const GammaLut&, StretchCarry&)
{
    return 0;
}
#else
// The pixels but the last, whose fourth lane would lie behind the row. Returns how many that are.
int CarryPixels(const int32_t* pProducts, uint8_t* pOut, int nWidth, const GammaLut& gammaLut, StretchCarry& carry)
{
    const hn::FixedTag<int32_t, 4> d;  // B, G, R, and a lane that nobody reads
    const auto zero = hn::Zero(d);
    const auto full = hn::Set(d, 65280);
    const auto byte = hn::Set(d, 255);
    alignas(16) int32_t vLanes[4] = {carry.vRest[0], carry.vRest[1], carry.vRest[2], 0};
    auto rest = hn::Load(d, vLanes);
    const int nPixels = std::max(nWidth - 1, 0);
    for (int x = 0; x < nPixels; ++x, pProducts += 6, pOut += 3) {
        const auto t = hn::Min(hn::Max(hn::Add(rest, hn::LoadU(d, pProducts)), zero), full);
        const auto u = hn::Add(t, hn::LoadU(d, pProducts + 3));
        const auto bias = hn::And(hn::ShiftRight<31>(u), byte);  // 255 below 0: the shift then truncates toward zero
        const auto biased = hn::Add(u, bias);
        rest = hn::Sub(hn::And(biased, byte), bias);
        hn::Store(hn::Min(hn::Max(hn::ShiftRight<8>(biased), zero), byte), d, vLanes);
        for (int c = 0; c < 3; ++c) pOut[c] = static_cast<uint8_t>(gammaLut.vValue[vLanes[c]]);
    }
    hn::Store(rest, d, vLanes);
    std::copy(vLanes, vLanes + 3, carry.vRest);
    return nPixels;
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(PatternProducts);
HWY_EXPORT(CarryPixels);

namespace {

// The base is cut where its product has passed 65536 either way: so every product fits 32 bits, and so does the sum
// t + high product, at most 65280 + 65280 * 32767.
StretchPattern MakePattern(const StretchGain& gain)
{
    const int32_t nScale = std::max(gain.nScale, -gain.nScale);
    const int32_t nLimit = nScale > 0 ? 65536 / nScale + 1 : 0;
    StretchPattern pattern;
    for (int i = 0; i < StretchPattern::kRun; ++i) {
        const bool bBase = i % 6 < 3;
        pattern.vOffset[i] = bBase ? gain.nLow : 0;
        pattern.vLimit[i] = bBase ? nLimit : 32768;
        pattern.vFactor[i] = bBase ? gain.nScale : gain.nHighGain;
    }
    return pattern;
}

}  // namespace

void StretchProducts(const int16_t* pFused, int32_t* pProducts, int nWidth, const StretchGain& gain)
{
    HWY_DYNAMIC_DISPATCH(PatternProducts)(pFused, pProducts, 6 * nWidth, MakePattern(gain));
}

void StretchProductsScalar(const int16_t* pFused, int32_t* pProducts, int nWidth, const StretchGain& gain)
{
    for (int i = 0; i < 6 * nWidth; ++i) {
        const int64_t nBase = int64_t{gain.nScale} * (pFused[i] - gain.nLow);
        pProducts[i] = i % 6 < 3 ? static_cast<int32_t>(std::min<int64_t>(std::max<int64_t>(nBase, -65537), 65537))
                                 : gain.nHighGain * pFused[i];
    }
}

void StretchCarryRowScalar(const int32_t* pProducts, uint8_t* pOut, int nWidth, const GammaLut& gammaLut,
                           StretchCarry& carry)
{
    for (int x = 0; x < nWidth; ++x, pProducts += 6, pOut += 3) {
        for (int c = 0; c < 3; ++c) {
            const int32_t u = Clamp(carry.vRest[c] + pProducts[c], 0, 65280) + pProducts[3 + c];
            carry.vRest[c] = u % 256;
            pOut[c] = static_cast<uint8_t>(gammaLut.vValue[ClampU8(u / 256)]);
        }
    }
}

void StretchCarryRow(const int32_t* pProducts, uint8_t* pOut, int nWidth, const GammaLut& gammaLut, StretchCarry& carry)
{
    const int nDone = HWY_DYNAMIC_DISPATCH(CarryPixels)(pProducts, pOut, nWidth, gammaLut, carry);
    StretchCarryRowScalar(pProducts + 6 * nDone, pOut + 3 * nDone, nWidth - nDone, gammaLut, carry);
}

}  // namespace vkr
#endif
