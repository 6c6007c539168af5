#include "local_curve/local_curve_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "local_curve/local_curve_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include <algorithm>
#include <cstring>

#include "foundation/fixed_point.h"

#ifndef VKR_LOCAL_CURVE_ROWS_TYPES
#define VKR_LOCAL_CURVE_ROWS_TYPES
namespace vkr {

// A run of pixels of one block on its way from carry to carry. The carries are serial; what stands between them, the
// gain and the mix of the four nodes, is a vector loop per step over these planes.
struct CurveRun {
    static constexpr int kPixels = 256;

    int nCount;
    uint8_t vColour[3][kPixels];  // B, G, R
    uint8_t vLuma[kPixels];
    uint32_t vRecip[kPixels];            // of the luma
    uint16_t vLumaOut[kPixels][4];       // luma through the four tables, 0 .. 256
    uint16_t vColourOut[3][kPixels][4];  // the components through the four tables, 0 .. 256
    int32_t vCorner[3][4][kPixels];      // result of each table, 0 .. 255
    int32_t vMixed[3][kPixels];          // mix of the four, in 1/16
};

// Place of a run in its block.
struct RunPlace {
    int32_t xi, yi;
};

}  // namespace vkr
#endif

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {

inline int32_t ClampByte(int32_t v)
{
    return std::min(std::max(v, 0), 255);
}

// Extra colour: the distance from the luma grows by nBoost / 256, toward zero. 255 * 65280 * 512 takes 64 bits.
inline int32_t BoostedColour(int32_t nColour, int32_t nLuma, int32_t nGain, int32_t nBoost)
{
    const int64_t nDistance = int64_t{nColour - nLuma} * nGain * nBoost;
    return ClampByte(static_cast<int32_t>(nLuma + nDistance / 65536));
}

// Component c of pixel i of a run, through the gain of the luma at one node.
template <bool bBoost>
inline int32_t GainedColour(const CurveRun& run, int c, int i, int32_t nGain, int32_t nBoost)
{
    if (bBoost) return BoostedColour(run.vColour[c][i], run.vLuma[i], nGain, nBoost);
    return std::min((run.vColour[c][i] * nGain + 128) >> 8, 255);
}

// nWeight of 16 for the luma-driven mapping, the rest for the components'.
template <bool bComponents, bool bBoost>
void LumaCorners(CurveRun& run, int32_t nWeight, int32_t nBoost)
{
    for (int i = 0; i < run.nCount; ++i) {
        for (int k = 0; k < 4; ++k) {
            const uint32_t nLumaOut = std::min<uint32_t>(run.vLumaOut[i][k], 255);
            const int32_t nGain = static_cast<int32_t>((nLumaOut * run.vRecip[i]) >> 16);  // Q8
            for (int c = 0; c < 3; ++c) {
                const int32_t q = GainedColour<bBoost>(run, c, i, nGain, nBoost);
                const int32_t p = bComponents ? std::min<int32_t>(run.vColourOut[c][i][k], 255) : 0;
                run.vCorner[c][k][i] = bComponents ? (q * nWeight + p * (16 - nWeight) + 8) >> 4 : q;
            }
        }
    }
}

void ComponentCorners(CurveRun& run)
{
    for (int c = 0; c < 3; ++c) {
        for (int i = 0; i < run.nCount; ++i) {
            for (int k = 0; k < 4; ++k) run.vCorner[c][k][i] = std::min<int32_t>(run.vColourOut[c][i][k], 255);
        }
    }
}

// Bilinear mix of the nodes by the place of a pixel in its block. Acc holds the products: 32 bits but for huge blocks.
template <class Acc>
void MixPlane(const int32_t (*pCorner)[CurveRun::kPixels], int32_t* pMixed, int nCount, const BlockGeometry& g,
              RunPlace place)
{
    const Acc nDown = place.yi;
    const Acc nUp = g.m_nBlockH - place.yi;
    for (int i = 0; i < nCount; ++i) {
        const Acc nRight = place.xi + i;
        const Acc nLeft = g.m_nBlockW - nRight;
        const Acc nUpper = ((nLeft * pCorner[0][i] + nRight * pCorner[1][i]) * g.m_nRecipX) >> (g.m_nShiftX - 4);
        const Acc nLower = ((nLeft * pCorner[2][i] + nRight * pCorner[3][i]) * g.m_nRecipX) >> (g.m_nShiftX - 4);
        pMixed[i] = static_cast<int32_t>(((nUp * nUpper + nDown * nLower) * g.m_nRecipY) >> g.m_nShiftY);
    }
}

void MixCorners(CurveRun& run, const BlockGeometry& g, RunPlace place, bool bWide)
{
    for (int c = 0; c < 3; ++c) {
        if (bWide) {
            MixPlane<int64_t>(run.vCorner[c], run.vMixed[c], run.nCount, g, place);
        } else {
            MixPlane<int32_t>(run.vCorner[c], run.vMixed[c], run.nCount, g, place);
        }
    }
}

void MapCorners(CurveRun& run, int32_t nWYUV, int32_t nSaturateBoost)
{
    const int32_t nBoost = nSaturateBoost + 256;
    if (nWYUV == 0) {
        ComponentCorners(run);
    } else if (nSaturateBoost == 0) {
        nWYUV == 16 ? LumaCorners<false, false>(run, nWYUV, nBoost) : LumaCorners<true, false>(run, nWYUV, nBoost);
    } else {
        nWYUV == 16 ? LumaCorners<false, true>(run, nWYUV, nBoost) : LumaCorners<true, true>(run, nWYUV, nBoost);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(MapCorners);
HWY_EXPORT(MixCorners);

namespace {

constexpr uint64_t kCarryLanes = 0x000F000F000F000F;  // the fraction of four lookups in 1/16
constexpr uint64_t kValueLanes = 0x0FFF0FFF0FFF0FFF;  // and, shifted down, their values

// 2^24 / max(luma, 1), rounded up. (v * vRecip[luma]) >> 16 is then exactly (v << 8) / luma for v 0 .. 255: what the
// rounding adds, v * luma at most, is below the 2^16 that one part in luma of the quotient takes. 255 << 24 fits.
struct LumaReciprocals {
    uint32_t vRecip[256];
    constexpr LumaReciprocals() : vRecip{}
    {
        for (uint32_t i = 0; i < 256; ++i) vRecip[i] = i == 0 ? 1U << 24 : ((1U << 24) + i - 1) / i;
    }
};
constexpr LumaReciprocals kLuma;

// Carries along a row.
struct RowCarries {
    uint64_t nLuma;       // four lookups
    uint64_t vColour[3];  // four lookups each
    int32_t vMixed[3];
};

// Four lookups at once; the carry keeps what they drop.
inline uint64_t LookUp(const BlockTable& table, uint8_t v, uint64_t& nCarry)
{
    const uint64_t nSum = table.vEntry[v] + nCarry;
    nCarry = nSum & kCarryLanes;
    return (nSum >> 4) & kValueLanes;
}

void ReadRun(const uint8_t* pPixel, CurveRun& run)
{
    for (int i = 0; i < run.nCount; ++i, pPixel += 3) {
        const int32_t nLuma = LumaOfBgr(pPixel[0], pPixel[1], pPixel[2]);
        for (int c = 0; c < 3; ++c) run.vColour[c][i] = pPixel[c];
        run.vLuma[i] = static_cast<uint8_t>(nLuma);
        run.vRecip[i] = kLuma.vRecip[nLuma];
    }
}

// Serial: nCount values through the four tables, carrying from one to the next.
void LookUpRun(const BlockTable& table, const uint8_t* pIn, int nCount, uint16_t (*pOut)[4], uint64_t& nCarry)
{
    uint64_t nRest = nCarry;
    for (int i = 0; i < nCount; ++i) {
        const uint64_t nValues = LookUp(table, pIn[i], nRest);
        std::memcpy(pOut[i], &nValues, sizeof(nValues));
    }
    nCarry = nRest;
}

// Serial: the mixed values become bytes, carrying from one to the next.
void WriteRun(const CurveRun& run, uint8_t* pPixel, RowCarries& carries)
{
    int32_t vRest[3] = {carries.vMixed[0], carries.vMixed[1], carries.vMixed[2]};
    for (int i = 0; i < run.nCount; ++i, pPixel += 3) {
        for (int c = 0; c < 3; ++c) {
            const int32_t nSum = run.vMixed[c][i] + vRest[c];
            vRest[c] = nSum & 15;
            pPixel[c] = static_cast<uint8_t>(std::min(nSum >> 4, 255));
        }
    }
    std::copy(vRest, vRest + 3, carries.vMixed);
}

// True if the products of the mix pass 32 bits: with 255 in every corner they are the largest.
bool NeedsWideMix(const BlockGeometry& g)
{
    constexpr int64_t nMost = 0x7FFFFFFF;
    const int64_t nAcross = 255 * int64_t{g.m_nBlockW} * g.m_nRecipX;
    return nAcross > nMost || (nAcross >> (g.m_nShiftX - 4)) * g.m_nBlockH * g.m_nRecipY > nMost;
}

void MapRun(uint8_t* pPixel, const BlockTable& table, const CurveMapping& mapping, RunPlace place, CurveRun& run,
            RowCarries& carries)
{
    ReadRun(pPixel, run);
    if (mapping.nWYUV != 0) LookUpRun(table, run.vLuma, run.nCount, run.vLumaOut, carries.nLuma);
    for (int c = 0; c < 3 && mapping.nWYUV != 16; ++c) {
        LookUpRun(table, run.vColour[c], run.nCount, run.vColourOut[c], carries.vColour[c]);
    }
    HWY_DYNAMIC_DISPATCH(MapCorners)(run, mapping.nWYUV, mapping.nSaturateBoost);
    HWY_DYNAMIC_DISPATCH(MixCorners)(run, mapping.geometry, place, NeedsWideMix(mapping.geometry));
    WriteRun(run, pPixel, carries);
}

}  // namespace

void MakeBlockTable(const int32_t* const pCurve[4], BlockTable& table)
{
    for (int v = 0; v < 256; ++v) {
        uint16_t vLane[4];
        const int i = v >> 2;  // between the points i - 1 and i; 0 stands before the first, 256 behind the last
        for (int k = 0; k < 4; ++k) {
            const int32_t nFrom = i > 0 ? pCurve[k][i - 1] : 0;
            const int32_t nTo = i < kCurvePoints ? pCurve[k][i] : 256;
            vLane[k] = static_cast<uint16_t>(std::max(nFrom * 16 + (nTo - nFrom) * (v & 3) * 4, 0));
        }
        std::memcpy(&table.vEntry[v], vLane, sizeof(vLane));
    }
}

void MapCurveRow(uint8_t* pRow, int32_t y, const CurveMapping& mapping)
{
    const BlockGeometry& g = mapping.geometry;
    const BlockTable* pTable = mapping.pTables + static_cast<size_t>(y / g.m_nBlockH) * mapping.nTableCols;
    CurveRun run;
    RowCarries carries{};
    RunPlace place = {0, y % g.m_nBlockH};
    for (int32_t x = 0; x < g.m_nWidth; x += run.nCount) {
        run.nCount = std::min({CurveRun::kPixels, g.m_nBlockW - place.xi, g.m_nWidth - x});
        MapRun(pRow + 3 * static_cast<size_t>(x), *pTable, mapping, place, run, carries);
        place.xi += run.nCount;
        if (place.xi < g.m_nBlockW) continue;
        place.xi = 0;
        ++pTable;
    }
}

namespace {

// What the lookups of one node leave: B, G, R and luma.
struct PlainCarries {
    int64_t vRest[4];
};

int64_t PlainLookUp(const BlockTable& table, int nNode, int64_t v, int64_t& nRest)
{
    const int64_t nSum = static_cast<int64_t>(table.vEntry[v] >> (16 * nNode) & 0xFFFF) + nRest;
    nRest = nSum % 16;
    return std::min<int64_t>(nSum / 16, 255);
}

// Pixel p through the curve of one node.
void PlainNode(const BlockTable& table, int nNode, const uint8_t* p, const CurveMapping& mapping, PlainCarries& carries,
               int64_t* vOut)
{
    const int64_t nLuma = (2 * p[0] + 9 * p[1] + 5 * p[2] + 8) / 16;
    int64_t nGain = 0;  // Q8
    if (mapping.nWYUV != 0) {
        nGain = PlainLookUp(table, nNode, nLuma, carries.vRest[3]) * 256 / std::max<int64_t>(nLuma, 1);
    }
    for (int c = 0; c < 3; ++c) {
        int64_t q = (p[c] * nGain + 128) / 256;
        if (mapping.nSaturateBoost != 0) {
            q = nLuma + (p[c] - nLuma) * nGain * (mapping.nSaturateBoost + 256) / 65536;
        }
        q = std::min<int64_t>(std::max<int64_t>(q, 0), 255);
        const int64_t nOwn = mapping.nWYUV == 16 ? 0 : PlainLookUp(table, nNode, p[c], carries.vRest[c]);
        vOut[c] = (q * mapping.nWYUV + nOwn * (16 - mapping.nWYUV) + 8) / 16;
    }
}

}  // namespace

void MapCurveRowScalar(uint8_t* pRow, int32_t y, const CurveMapping& mapping)
{
    const BlockGeometry& g = mapping.geometry;
    const int64_t yi = y % g.m_nBlockH;
    PlainCarries vNodes[4] = {};
    int64_t vRest[3] = {};
    for (int32_t x = 0; x < g.m_nWidth; ++x) {
        uint8_t* const p = pRow + 3 * static_cast<size_t>(x);
        const int64_t xi = x % g.m_nBlockW;
        int64_t r[4][3];
        for (int k = 0; k < 4; ++k) {
            const size_t nBlock = static_cast<size_t>(y / g.m_nBlockH) * mapping.nTableCols + x / g.m_nBlockW;
            PlainNode(mapping.pTables[nBlock], k, p, mapping, vNodes[k], r[k]);
        }
        for (int c = 0; c < 3; ++c) {
            const auto Across = [&](int64_t nLeft, int64_t nRight) {
                return (((g.m_nBlockW - xi) * nLeft + xi * nRight) * g.m_nRecipX) >> (g.m_nShiftX - 4);
            };
            const int64_t nUpper = Across(r[0][c], r[1][c]), nLower = Across(r[2][c], r[3][c]);
            const int64_t nSum =
                ((((g.m_nBlockH - yi) * nUpper + yi * nLower) * g.m_nRecipY) >> g.m_nShiftY) + vRest[c];
            vRest[c] = nSum % 16;
            p[c] = static_cast<uint8_t>(std::min<int64_t>(nSum / 16, 255));
        }
    }
}

}  // namespace vkr
#endif
