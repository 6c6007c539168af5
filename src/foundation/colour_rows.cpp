#include "foundation/colour_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "foundation/colour_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set

#include <hwy/highway.h>

#include <algorithm>
#include <cstring>

// The loops are plain C++: the compiler vectorises them for each instruction set. Rows go through the planes of a strip
// that stays in the first cache; interleaved samples would keep the sums from being vectorised well.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

constexpr int kStrip = 512;  // pixels, a multiple of 16

struct Strip {
    uint8_t v0[kStrip], v1[kStrip], v2[kStrip];
};

void Split(const uint8_t* HWY_RESTRICT pRow, int nPixels, Strip& strip)
{
    for (int i = 0; i < nPixels; ++i) {
        strip.v0[i] = pRow[3 * i];
        strip.v1[i] = pRow[3 * i + 1];
        strip.v2[i] = pRow[3 * i + 2];
    }
}

void Join(const uint8_t* HWY_RESTRICT p0, const uint8_t* HWY_RESTRICT p1, const uint8_t* HWY_RESTRICT p2, int nPixels,
          uint8_t* HWY_RESTRICT pRow)
{
    for (int i = 0; i < nPixels; ++i) {
        pRow[3 * i] = p0[i];
        pRow[3 * i + 1] = p1[i];
        pRow[3 * i + 2] = p2[i];
    }
}

// Quotient by 256 toward zero; |v| <= 32640, so that 16 bits hold it.
HWY_INLINE int16_t DivideBy256(int16_t v)
{
    return static_cast<int16_t>(static_cast<int16_t>(v + ((v >> 15) & 255)) >> 8);
}

// In place on the planes B, G, R.
void ToYCbCr(Strip& strip, int nPixels)
{
    for (int i = 0; i < nPixels; ++i) {
        const int16_t b = strip.v0[i], g = strip.v1[i], r = strip.v2[i];
        // The weights of a difference sum to 0 and reach 128 * 255 = 32640 either way; those of the luma need 16 bits
        // without a sign.
        const auto nLuma = static_cast<uint16_t>(29 * b + 150 * g + 77 * r + 128);
        const auto nBlue = static_cast<int16_t>(128 * b - 85 * g - 43 * r);
        const auto nRed = static_cast<int16_t>(128 * r - 107 * g - 21 * b);
        strip.v0[i] = static_cast<uint8_t>(nLuma >> 8);
        strip.v1[i] = static_cast<uint8_t>(DivideBy256(nBlue) + 128);
        strip.v2[i] = static_cast<uint8_t>(DivideBy256(nRed) + 128);
    }
}

// One sum of the way back, 256 * nWhole + nFraction, cut at 0 below: its whole part, limited to 255, and its low byte.
HWY_INLINE void StoreSum(int16_t nWhole, int16_t nFraction, uint8_t& nHigh, uint8_t& nLow)
{
    const auto nSum = static_cast<int16_t>(nWhole + (nFraction >> 8));
    nHigh = static_cast<uint8_t>(nSum < 0 ? 0 : (nSum > 255 ? 255 : nSum));
    nLow = static_cast<uint8_t>(nSum < 0 ? 0 : nFraction & 255);
}

// The factors 359, -183 and -88, 454 lose their multiples of 256, which belong to the whole part: all fits 16 bits.
void ToSums(const uint8_t* HWY_RESTRICT pLuma, const uint8_t* HWY_RESTRICT pCb, const uint8_t* HWY_RESTRICT pCr,
            int nPixels, Strip& high, Strip& low)
{
    for (int i = 0; i < nPixels; ++i) {
        const int16_t y = pLuma[i];
        const auto cb = static_cast<int16_t>(pCb[i] - 128), cr = static_cast<int16_t>(pCr[i] - 128);
        StoreSum(static_cast<int16_t>(y + 2 * cb), static_cast<int16_t>(-58 * cb), high.v0[i], low.v0[i]);
        StoreSum(static_cast<int16_t>(y - cr), static_cast<int16_t>(73 * cr - 88 * cb), high.v1[i], low.v1[i]);
        StoreSum(static_cast<int16_t>(y + cr), static_cast<int16_t>(103 * cr), high.v2[i], low.v2[i]);
    }
}

// The only part that runs on along the raster: sums of the low bytes, modulo 256. pLow has room up to a multiple of 16.
#if HWY_TARGET == HWY_SCALAR
void RunCarry(uint8_t* HWY_RESTRICT pLow, int nPixels, uint8_t& nDropped, uint8_t* HWY_RESTRICT pRunning)
{
    uint8_t nSum = nDropped;
    for (int i = 0; i < nPixels; ++i) pRunning[i] = nSum = static_cast<uint8_t>(nSum + pLow[i]);
    nDropped = nSum;
}
#else
// Sixteen at a time: sums of 2, 4, 8 and 16 neighbours, then what came before them. The zeros behind the last pixel
// leave the last sum as it is.
void RunCarry(uint8_t* HWY_RESTRICT pLow, int nPixels, uint8_t& nDropped, uint8_t* HWY_RESTRICT pRunning)
{
    namespace hn = hwy::HWY_NAMESPACE;
    const hn::FixedTag<uint8_t, 16> d;
    const auto last = hn::Set(d, 15);
    std::memset(pLow + nPixels, 0, static_cast<size_t>(-nPixels & 15));
    auto before = hn::Set(d, nDropped);
    for (int i = 0; i < nPixels; i += 16) {
        auto sum = hn::LoadU(d, pLow + i);
        sum = hn::Add(sum, hn::ShiftLeftBytes<1>(d, sum));
        sum = hn::Add(sum, hn::ShiftLeftBytes<2>(d, sum));
        sum = hn::Add(sum, hn::ShiftLeftBytes<4>(d, sum));
        sum = hn::Add(sum, hn::ShiftLeftBytes<8>(d, sum));
        hn::StoreU(hn::Add(sum, before), d, pRunning + i);
        before = hn::Add(before, hn::TableLookupBytes(sum, last));
    }
    nDropped = hn::GetLane(before);
}
#endif

// Adds to the whole parts what the low bytes carry into them: a running sum below its last summand has passed 256.
void CarryPlane(uint8_t* HWY_RESTRICT pLow, int nPixels, uint8_t& nDropped, uint8_t* HWY_RESTRICT pRunning,
                uint8_t* HWY_RESTRICT pHigh)
{
    RunCarry(pLow, nPixels, nDropped, pRunning);
    for (int i = 0; i < nPixels; ++i) {
        const int nCarry = pRunning[i] < pLow[i] ? 1 : 0;
        pHigh[i] = static_cast<uint8_t>(pHigh[i] + (pHigh[i] < 255 ? nCarry : 0));
    }
}

void BgrToYCbCrSimd(uint8_t* pRow, int nPixels, bool bRedFirst)
{
    Strip strip;
    for (int x = 0; x < nPixels; x += kStrip) {
        const int n = nPixels - x < kStrip ? nPixels - x : kStrip;
        Split(pRow + 3 * x, n, strip);
        ToYCbCr(strip, n);
        Join(strip.v0, bRedFirst ? strip.v2 : strip.v1, bRedFirst ? strip.v1 : strip.v2, n, pRow + 3 * x);
    }
}

void YCbCrToBgrSimd(uint8_t* pRow, int nPixels, bool bRedFirst, ColourCarry& carry)
{
    Strip strip, high, low;
    for (int x = 0; x < nPixels; x += kStrip) {
        const int n = nPixels - x < kStrip ? nPixels - x : kStrip;
        Split(pRow + 3 * x, n, strip);
        ToSums(strip.v0, bRedFirst ? strip.v2 : strip.v1, bRedFirst ? strip.v1 : strip.v2, n, high, low);
        CarryPlane(low.v0, n, carry.vDropped[0], strip.v0, high.v0);
        CarryPlane(low.v1, n, carry.vDropped[1], strip.v1, high.v1);
        CarryPlane(low.v2, n, carry.vDropped[2], strip.v2, high.v2);
        Join(high.v0, high.v1, high.v2, n, pRow + 3 * x);
    }
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(BgrToYCbCrSimd);
void BgrToYCbCrRow(uint8_t* pRow, int nPixels, bool bRedFirst)
{
    HWY_DYNAMIC_DISPATCH(BgrToYCbCrSimd)(pRow, nPixels, bRedFirst);
}

void BgrToYCbCrRowScalar(uint8_t* pRow, int nPixels, bool bRedFirst)
{
    for (uint8_t* p = pRow; p < pRow + 3 * nPixels; p += 3) {
        const int b = p[0], g = p[1], r = p[2];
        p[0] = static_cast<uint8_t>((29 * b + 150 * g + 77 * r + 128) >> 8);
        p[bRedFirst ? 2 : 1] = static_cast<uint8_t>((128 * b - 85 * g - 43 * r) / 256 + 128);
        p[bRedFirst ? 1 : 2] = static_cast<uint8_t>((128 * r - 107 * g - 21 * b) / 256 + 128);
    }
}

HWY_EXPORT(YCbCrToBgrSimd);
void YCbCrToBgrRow(uint8_t* pRow, int nPixels, bool bRedFirst, ColourCarry& carry)
{
    HWY_DYNAMIC_DISPATCH(YCbCrToBgrSimd)(pRow, nPixels, bRedFirst, carry);
}

void YCbCrToBgrRowScalar(uint8_t* pRow, int nPixels, bool bRedFirst, ColourCarry& carry)
{
    for (uint8_t* p = pRow; p < pRow + 3 * nPixels; p += 3) {
        const int y = p[0] * 256, cb = p[bRedFirst ? 2 : 1] - 128, cr = p[bRedFirst ? 1 : 2] - 128;
        const int vSums[3] = {y + 454 * cb, y - 183 * cr - 88 * cb, y + 359 * cr};
        for (int c = 0; c < 3; ++c) {
            const int nTotal = std::max(vSums[c], 0) + carry.vDropped[c];
            p[c] = static_cast<uint8_t>(std::min(nTotal / 256, 255));
            carry.vDropped[c] = static_cast<uint8_t>(nTotal % 256);
        }
    }
}

}  // namespace vkr
#endif
