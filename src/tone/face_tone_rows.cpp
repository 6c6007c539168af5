#include "tone/face_tone_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/face_tone_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include <algorithm>

#include "foundation/fixed_point.h"

// The loop is plain C++: the compiler vectorises it for each instruction set.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {

// Entry of the table for every sample, taken as a base with its high frequency three samples on; those of the high
// frequencies themselves mean nothing, but leaving them out would break the vectors. Reads nCount + 3 samples.
void FaceEntries(const int16_t* HWY_RESTRICT pFused, uint16_t* HWY_RESTRICT pEntries, int nCount, const FaceRowLut& lut)
{
    const auto nLow = static_cast<int16_t>(lut.nLow), nHigh = static_cast<int16_t>(lut.nHigh);
    const auto nSpan = static_cast<int16_t>(lut.nSpan);
    constexpr int16_t kReach = 1024;  // more than any span: the sums below fit 16 bits
    for (int i = 0; i < nCount; ++i) {
        const int16_t nBase = pFused[i];
        const int16_t nDetail = std::min(std::max<int16_t>(pFused[i + 3], -kReach), kReach);
        const auto nLevel = static_cast<int16_t>(nBase - nLow);  // may wrap outside the levels, and is not used there
        auto nSum = static_cast<int16_t>(nLevel + nDetail);
        nSum = std::min(std::max<int16_t>(nSum, 0), nSpan);
        nSum = nBase > nHigh ? static_cast<int16_t>(nSpan + 1) : nSum;
        nSum = nBase < nLow ? int16_t{-1} : nSum;
        pEntries[i] = static_cast<uint16_t>(nSum + 1);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(FaceEntries);

namespace {

constexpr int kStrip = 256;  // pixels

void DetailInside(const int16_t* pFused, uint8_t* pOut, int nPixels, const FaceRowLut& lut)
{
    uint16_t vEntries[6 * kStrip];
    HWY_DYNAMIC_DISPATCH(FaceEntries)(pFused, vEntries, 6 * nPixels - 3, lut);
    for (int x = 0; x < nPixels; ++x) {
        for (int c = 0; c < 3; ++c) pOut[3 * x + c] = lut.vValue[vEntries[6 * x + c]];
    }
}

void DetailBehind(const int16_t* pFused, uint8_t* pOut, int nPixels, const FaceRowLut& lut)
{
    for (int x = 0; x < nPixels; ++x, pFused += 6, pOut += 3) {
        for (int c = 0; c < 3; ++c) {
            const int32_t nBase = pFused[c];
            if (nBase < lut.nLow || nBase > lut.nHigh) {
                pOut[c] = nBase < lut.nLow ? 0 : 255;
            } else {
                pOut[c] = ClampU8(lut.vValue[nBase - lut.nLow + 1] + pFused[3 + c]);
            }
        }
    }
}

}  // namespace

FaceRowLut MakeFaceRowLut(const ToneLut& toneLut, const StretchLevels& levels)
{
    FaceRowLut lut{};
    lut.nLow = levels.m_nLowLevel;
    lut.nHigh = levels.m_nHighLevel;
    const int32_t nLevels = Clamp(lut.nHigh - lut.nLow + 1, 0, ToneLut::kEntries);
    lut.nSpan = nLevels - 1;
    std::copy_n(toneLut.vValue, nLevels, lut.vValue + 1);
    lut.vValue[nLevels + 1] = 255;
    return lut;
}

void FaceToneRow(const int16_t* pFused, uint8_t* pOut, int nWidth, const FaceRowLut& lut, bool bHighInside)
{
    for (int x = 0; x < nWidth; x += kStrip) {
        const int nPixels = std::min(nWidth - x, kStrip);
        (bHighInside ? DetailInside : DetailBehind)(pFused + 6 * x, pOut + 3 * x, nPixels, lut);
    }
}

void FaceToneRowScalar(const int16_t* pFused, uint8_t* pOut, int nWidth, const FaceRowLut& lut, bool bHighInside)
{
    for (int i = 0; i < 3 * nWidth; ++i) {
        const int nBase = pFused[i / 3 * 6 + i % 3], nHigh = pFused[i / 3 * 6 + 3 + i % 3];
        const int nLevel = nBase - lut.nLow;
        if (nLevel < 0 || nBase > lut.nHigh) {
            pOut[i] = nBase > lut.nHigh && nLevel >= 0 ? 255 : 0;
        } else if (bHighInside) {
            pOut[i] = lut.vValue[1 + Clamp(nLevel + nHigh, 0, lut.nSpan)];
        } else {
            pOut[i] = ClampU8(lut.vValue[1 + nLevel] + nHigh);
        }
    }
}

}  // namespace vkr
#endif
