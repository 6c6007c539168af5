#include "tone/face_curve.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/log.h"

namespace vkr {

namespace {

// Slopes of the three pieces.
struct Slopes {
    float fDark, fFace, fBright;
};

float Slope(int32_t nRise, int32_t nRun)
{
    return static_cast<float>(nRise) / static_cast<float>(nRun);  // not finite where nRun is 0: wanted
}

float CurveValue(const CurveAnchors& a, const Slopes& slopes, int32_t nLow, int32_t nLevel)
{
    if (nLevel < a.nMinFus) return static_cast<float>(nLevel - nLow) * slopes.fDark;
    if (nLevel < a.nMaxFus) {
        return static_cast<float>(a.nMinRef) + static_cast<float>(nLevel - a.nMinFus) * slopes.fFace;
    }
    return static_cast<float>(a.nMaxRef) + static_cast<float>(nLevel - a.nMaxFus) * slopes.fBright;
}

// Toward zero, saturating; not-a-number, which no comparison holds for, to 0.
uint32_t ToUnsigned(double v)
{
    if (!(v >= 0.0)) return 0;
    return v >= 4294967295.0 ? 4294967295U : static_cast<uint32_t>(v);
}

}  // namespace

SortedLevels SortLevels(const int32_t (&vLevels)[3])
{
    int32_t v[3] = {vLevels[0], vLevels[1], vLevels[2]};
    std::sort(v, v + 3);
    return {v[2], v[1], v[0]};
}

CurveAnchors MakeAnchors(const SortedLevels& reference, const SortedLevels& fusion, int32_t nCombineWeight)
{
    CurveAnchors a;
    a.nMaxRef = (reference.nMid * (256 - nCombineWeight) + reference.nHigh * nCombineWeight) >> 8;
    a.nMinRef = static_cast<int32_t>(DivOrZero64(int64_t{a.nMaxRef} * reference.nLow, reference.nHigh));
    a.nMinFus = fusion.nLow;
    a.nMaxFus = fusion.nHigh;
    return a;
}

void BuildFaceCurve(const CurveAnchors& a, const StretchLevels& levels, ToneLut& toneLut)
{
    const int32_t nLow = levels.m_nLowLevel, nHigh = levels.m_nHighLevel;
    const Slopes slopes = {Slope(a.nMinRef, a.nMinFus - nLow), Slope(a.nMaxRef - a.nMinRef, a.nMaxFus - a.nMinFus),
                           Slope(255 - a.nMaxRef, nHigh - a.nMaxFus)};
    std::fill_n(toneLut.vValue, ToneLut::kEntries, uint8_t{0});
    HdrPrintf("LUT:");
    for (int32_t nLevel = nLow; nLevel <= nHigh && nLevel - nLow < ToneLut::kEntries; ++nLevel) {
        const uint32_t nValue = ToUnsigned(static_cast<double>(CurveValue(a, slopes, nLow, nLevel)) + 0.5);
        HdrPrintf("%i ", static_cast<int>(nValue));
        toneLut.vValue[nLevel - nLow] = static_cast<uint8_t>(nValue);
    }
    HdrPrintf("\n");
}

}  // namespace vkr
