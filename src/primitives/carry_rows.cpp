#include "primitives/carry_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "primitives/carry_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

void DropU8(const uint16_t* HWY_RESTRICT pSums, uint8_t* HWY_RESTRICT pDst, int nCount, int nShift, int nRound)
{
    for (int i = 0; i < nCount; ++i) {
        pDst[i] = static_cast<uint8_t>(static_cast<uint16_t>(pSums[i] + nRound) >> nShift);
    }
}

// Truncates toward zero: below 0 the shift, a floor, is preceded by adding one less than the divisor.
void DropS16(const int32_t* HWY_RESTRICT pSums, int16_t* HWY_RESTRICT pDst, int nCount, int nShift, int nRound)
{
    const int32_t nMask = (1 << nShift) - 1;
    for (int i = 0; i < nCount; ++i) {
        const int32_t nSum = pSums[i] + nRound;
        pDst[i] = static_cast<int16_t>((nSum + ((nSum >> 31) & nMask)) >> nShift);
    }
}

void FloorS16(const int32_t* HWY_RESTRICT pSums, int16_t* HWY_RESTRICT pDst, int nCount, int nShift, int nRound)
{
    for (int i = 0; i < nCount; ++i) pDst[i] = static_cast<int16_t>((pSums[i] + nRound) >> nShift);
}

// Byte numbers for TableLookupBytes: a shift of 16 samples up by n, zeros moving in, and the last nDim samples of 16
// repeated from the bottom, so that every sample of the next 16 meets the last one of its channel.
struct CarryTables {
    CarryTables(int nDim)
    {
        for (int nStep = 0; nStep < 4; ++nStep) {
            const int n = nDim << nStep;
            for (int i = 0; i < 16; ++i) vShift[nStep][i] = static_cast<uint8_t>(i >= n ? i - n : 0x80);
        }
        for (int i = 0; i < 16; ++i) vLast[i] = i < nDim ? static_cast<uint8_t>(16 - nDim + i) : vLast[i - nDim];
    }
    alignas(16) uint8_t vShift[4][16];
    alignas(16) uint8_t vLast[16];
};

// Scaled to 8 fraction bits, a sum is a high byte and a low one. The remainder behind each sample is the running total
// of the low bytes of its channel modulo 256, a prefix sum in byte lanes, and where that total wraps it is smaller than
// the low byte just added: there the sample is one more than its high byte. Returns the samples done, a multiple of 16;
// *pLast are the remainders behind the last 16.
#if HWY_TARGET == HWY_SCALAR
int CarryU8(const uint16_t*, uint8_t*, int, int, int, uint8_t*)
{
    return 0;
}
#else
int CarryU8(const uint16_t* HWY_RESTRICT pSums, uint8_t* HWY_RESTRICT pDst, int nCount, int nDim, int nShift,
            uint8_t* HWY_RESTRICT pCarry)
{
    const hn::FixedTag<uint8_t, 16> d8;
    const hn::FixedTag<uint16_t, 8> d16;
    const CarryTables tables(nDim);
    const auto shift0 = hn::Load(d8, tables.vShift[0]), shift1 = hn::Load(d8, tables.vShift[1]);
    const auto shift2 = hn::Load(d8, tables.vShift[2]), shift3 = hn::Load(d8, tables.vShift[3]);
    const auto last = hn::Load(d8, tables.vLast);
    const auto one = hn::Set(d8, 1);

    alignas(16) uint8_t vTotal[16] = {};
    for (int c = 0; c < nDim; ++c) vTotal[16 - nDim + c] = pCarry[c];
    auto total = hn::Load(d8, vTotal);
    int i = 0;
    for (; i + 16 <= nCount; i += 16) {
        const auto sum0 = hn::ShiftLeftSame(hn::LoadU(d16, pSums + i), 8 - nShift);
        const auto sum1 = hn::ShiftLeftSame(hn::LoadU(d16, pSums + i + 8), 8 - nShift);
        const auto lows = hn::ConcatEven(d8, hn::BitCast(d8, sum1), hn::BitCast(d8, sum0));
        const auto highs = hn::ConcatOdd(d8, hn::BitCast(d8, sum1), hn::BitCast(d8, sum0));
        auto prefix = hn::Add(lows, hn::TableLookupBytesOr0(lows, shift0));
        prefix = hn::Add(prefix, hn::TableLookupBytesOr0(prefix, shift1));
        prefix = hn::Add(prefix, hn::TableLookupBytesOr0(prefix, shift2));
        prefix = hn::Add(prefix, hn::TableLookupBytesOr0(prefix, shift3));
        total = hn::Add(prefix, hn::TableLookupBytes(total, last));
        hn::StoreU(hn::Add(highs, hn::IfThenElseZero(hn::Lt(total, lows), one)), d8, pDst + i);
    }
    // A run of 16 ends in the middle of a pixel unless 16 is a multiple of nDim, so the remainders are turned to begin
    // with the channel that comes next.
    hn::Store(total, d8, vTotal);
    for (int k = 0; k < nDim; ++k) pCarry[(i + k) % nDim] = vTotal[16 - nDim + k];
    return i;
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

namespace {

// Samples nBegin .. nCount of the row.
void CarryFrom(int nBegin, const uint16_t* pSums, uint8_t* pDst, int nCount, int nDim, int nShift, uint8_t* pCarry)
{
    int c = nBegin % nDim;
    for (int i = nBegin; i < nCount; ++i) {
        const int nSum = (pSums[i] << (8 - nShift)) + pCarry[c];
        pDst[i] = static_cast<uint8_t>(nSum >> 8);
        pCarry[c] = static_cast<uint8_t>(nSum & 0xFF);
        if (++c == nDim) c = 0;
    }
}

// The sample of a total of sum and remainder; nCarry takes the new remainder, which has the sign of the total.
struct TowardZero {
    static int16_t Take(int32_t nTotal, int nShift, int32_t& nCarry)
    {
        const int32_t nQuotient = (nTotal + ((nTotal >> 31) & ((1 << nShift) - 1))) >> nShift;
        nCarry = nTotal - nQuotient * (1 << nShift);
        return static_cast<int16_t>(nQuotient);
    }
};

// The same with a remainder of 0 .. (1 << nShift) - 1.
struct TowardFloor {
    static int16_t Take(int32_t nTotal, int nShift, int32_t& nCarry)
    {
        nCarry = nTotal & ((1 << nShift) - 1);
        return static_cast<int16_t>(nTotal >> nShift);
    }
};

// kDim channels, their remainders in registers.
template <class Rounding, int kDim>
void CarryDims(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int32_t* pCarry)
{
    int32_t vCarry[kDim];
    for (int c = 0; c < kDim; ++c) vCarry[c] = pCarry[c];
    for (int i = 0; i + kDim <= nCount; i += kDim) {
        for (int c = 0; c < kDim; ++c) pDst[i + c] = Rounding::Take(pSums[i + c] + vCarry[c], nShift, vCarry[c]);
    }
    for (int c = 0; c < kDim; ++c) pCarry[c] = vCarry[c];
}

template <class Rounding>
void CarrySigned(const int32_t* HWY_RESTRICT pSums, int16_t* HWY_RESTRICT pDst, int nCount, int nDim, int nShift,
                 int32_t* HWY_RESTRICT pCarry)
{
    if (nDim == 1) return CarryDims<Rounding, 1>(pSums, pDst, nCount, nShift, pCarry);
    if (nDim == 3) return CarryDims<Rounding, 3>(pSums, pDst, nCount, nShift, pCarry);
    if (nDim == 4) return CarryDims<Rounding, 4>(pSums, pDst, nCount, nShift, pCarry);
    for (int i = 0; i + nDim <= nCount; i += nDim) {
        for (int c = 0; c < nDim; ++c) pDst[i + c] = Rounding::Take(pSums[i + c] + pCarry[c], nShift, pCarry[c]);
    }
}

}  // namespace

HWY_EXPORT(DropU8);
HWY_EXPORT(DropS16);
HWY_EXPORT(FloorS16);
HWY_EXPORT(CarryU8);

void DropRow(const uint16_t* pSums, uint8_t* pDst, int nCount, int nShift, int nRound)
{
    HWY_DYNAMIC_DISPATCH(DropU8)(pSums, pDst, nCount, nShift, nRound);
}

void DropRow(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int nRound)
{
    HWY_DYNAMIC_DISPATCH(DropS16)(pSums, pDst, nCount, nShift, nRound);
}

void CarryRowScalar(const uint16_t* pSums, uint8_t* pDst, int nCount, int nDim, int nShift, uint8_t* pCarry)
{
    CarryFrom(0, pSums, pDst, nCount, nDim, nShift, pCarry);
}

void CarryRow(const uint16_t* pSums, uint8_t* pDst, int nCount, int nDim, int nShift, uint8_t* pCarry)
{
    // The vector form holds the channels of a pixel in its 16 lanes.
    const int nDone = nDim <= 16 ? HWY_DYNAMIC_DISPATCH(CarryU8)(pSums, pDst, nCount, nDim, nShift, pCarry) : 0;
    CarryFrom(nDone, pSums, pDst, nCount, nDim, nShift, pCarry);
}

void CarryRow(const int32_t* pSums, int16_t* pDst, int nCount, int nDim, int nShift, int32_t* pCarry)
{
    CarrySigned<TowardZero>(pSums, pDst, nCount, nDim, nShift, pCarry);
}

void FloorRow(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int nRound)
{
    HWY_DYNAMIC_DISPATCH(FloorS16)(pSums, pDst, nCount, nShift, nRound);
}

void FloorRowScalar(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int nRound)
{
    const int32_t nDivisor = 1 << nShift;
    for (int i = 0; i < nCount; ++i) {
        const int32_t nSum = pSums[i] + nRound, nRest = nSum % nDivisor;
        pDst[i] = static_cast<int16_t>(nSum / nDivisor - (nRest < 0 ? 1 : 0));
    }
}

void FloorCarryRow(const int32_t* pSums, int16_t* pDst, int nCount, int nDim, int nShift, int32_t* pCarry)
{
    CarrySigned<TowardFloor>(pSums, pDst, nCount, nDim, nShift, pCarry);
}

}  // namespace vkr
#endif  // HWY_ONCE
