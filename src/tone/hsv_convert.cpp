#include "tone/hsv_convert.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tone/hsv_convert.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include <algorithm>

#include "foundation/parallel_rows.h"
#include "foundation/timing.h"

#ifndef VKR_HSV_CONVERT_TABLES
#define VKR_HSV_CONVERT_TABLES
namespace vkr {
namespace {

// Quotients by a byte as products: n * 65536 / v rounded up, entry 0 is 0. With n = 255 or 43 and a factor up to v the
// excess stays below 1/256, so that a product shifted by 16 is the quotient truncated.
struct Reciprocals {
    uint32_t v255[256], v43[256];
};

constexpr Reciprocals MakeReciprocals()
{
    Reciprocals table{};
    for (uint32_t v = 1; v < 256; ++v) {
        table.v255[v] = (255 * 65536 + v - 1) / v;
        table.v43[v] = (43 * 65536 + v - 1) / v;
    }
    return table;
}

constexpr Reciprocals kReciprocals = MakeReciprocals();

}  // namespace
}  // namespace vkr
#endif

// The loops are plain C++: the compiler vectorises them for each instruction set. Rows go through the planes of a strip
// that stays in the first cache.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

constexpr int kStrip = 256;  // pixels

struct Planes {
    uint8_t v0[kStrip], v1[kStrip], v2[kStrip];
};

void Split(const uint8_t* HWY_RESTRICT pRow, int nPixels, Planes& planes)
{
    for (int i = 0; i < nPixels; ++i) {
        planes.v0[i] = pRow[3 * i];
        planes.v1[i] = pRow[3 * i + 1];
        planes.v2[i] = pRow[3 * i + 2];
    }
}

void Join(const Planes& planes, int nPixels, uint8_t* HWY_RESTRICT pRow)
{
    for (int i = 0; i < nPixels; ++i) {
        pRow[3 * i] = planes.v0[i];
        pRow[3 * i + 1] = planes.v1[i];
        pRow[3 * i + 2] = planes.v2[i];
    }
}

// What the quotients are made of: value, spread, and for the hue the difference over the spread with its offset.
struct HueParts {
    uint8_t vValue[kStrip], vSpread[kStrip], vDistance[kStrip], vNegative[kStrip], vOffset[kStrip];
};

void TakeParts(const Planes& bgr, int nPixels, HueParts& parts)
{
    for (int i = 0; i < nPixels; ++i) {
        const int16_t b = bgr.v0[i], g = bgr.v1[i], r = bgr.v2[i];
        const int16_t nValue = std::max(std::max(b, g), r);
        const int16_t nLeast = std::min(std::min(b, g), r);
        int16_t nDistance = static_cast<int16_t>(r - g), nOffset = 171;
        nDistance = nValue == g ? static_cast<int16_t>(b - r) : nDistance;
        nOffset = nValue == g ? int16_t{85} : nOffset;
        nDistance = nValue == r ? static_cast<int16_t>(g - b) : nDistance;
        nOffset = nValue == r ? int16_t{0} : nOffset;
        parts.vValue[i] = static_cast<uint8_t>(nValue);
        parts.vSpread[i] = static_cast<uint8_t>(nValue - nLeast);
        parts.vDistance[i] = static_cast<uint8_t>(nDistance < 0 ? -nDistance : nDistance);
        parts.vNegative[i] = static_cast<uint8_t>(nDistance < 0 ? 255 : 0);
        parts.vOffset[i] = static_cast<uint8_t>(nOffset);
    }
}

// A spread of 0 has a quotient of 0 but an offset: grey is told from the saturation.
void Divide(const HueParts& parts, int nPixels, Planes& hsv)
{
    for (int i = 0; i < nPixels; ++i) {
        const uint32_t nSaturation = (parts.vSpread[i] * kReciprocals.v255[parts.vValue[i]]) >> 16;
        const uint32_t nQuotient = (parts.vDistance[i] * kReciprocals.v43[parts.vSpread[i]]) >> 16;
        const uint32_t nNegative = parts.vNegative[i];
        const uint32_t nHue = parts.vOffset[i] + (nQuotient ^ nNegative) - nNegative;  // 255 is -1 in a byte
        hsv.v0[i] = static_cast<uint8_t>(nSaturation == 0 ? 0 : nHue);
        hsv.v1[i] = static_cast<uint8_t>(nSaturation);
        hsv.v2[i] = parts.vValue[i];
    }
}

void ToBgr(const Planes& hsv, int nPixels, Planes& bgr)
{
    for (int i = 0; i < nPixels; ++i) {
        const uint16_t h = hsv.v0[i], s = hsv.v1[i], v = hsv.v2[i];
        const auto nRegion = static_cast<uint16_t>((h * 191) >> 13);  // h / 43
        const auto nRem = static_cast<uint16_t>((h - nRegion * 43) * 6);
        auto p = static_cast<uint16_t>(static_cast<uint16_t>((255 - s) * v) >> 8);
        const auto q =
            static_cast<uint16_t>(static_cast<uint16_t>((255 - (static_cast<uint16_t>(s * nRem) >> 8)) * v) >> 8);
        const auto t = static_cast<uint16_t>(
            static_cast<uint16_t>((255 - (static_cast<uint16_t>(s * (255 - nRem)) >> 8)) * v) >> 8);
        uint16_t r = v, g = p, b = q;
        r = nRegion == 1 ? q : (nRegion == 4 ? t : r);
        r = (nRegion == 2 || nRegion == 3) ? p : r;
        g = nRegion == 0 ? t : (nRegion == 3 ? q : g);
        g = (nRegion == 1 || nRegion == 2) ? v : g;
        b = nRegion == 2 ? t : ((nRegion == 3 || nRegion == 4) ? v : b);
        b = nRegion < 2 ? p : b;
        bgr.v0[i] = static_cast<uint8_t>(s == 0 ? v : b);
        bgr.v1[i] = static_cast<uint8_t>(s == 0 ? v : g);
        bgr.v2[i] = static_cast<uint8_t>(s == 0 ? v : r);
    }
}

}  // namespace

void BgrToHsvPixels(const uint8_t* pBgr, uint8_t* pHsv, int nPixels)
{
    Planes planes;
    HueParts parts;
    for (int x = 0; x < nPixels; x += kStrip) {
        const int n = std::min(nPixels - x, kStrip);
        Split(pBgr + 3 * x, n, planes);
        TakeParts(planes, n, parts);
        Divide(parts, n, planes);
        Join(planes, n, pHsv + 3 * x);
    }
}

void HsvToBgrPixels(const uint8_t* pHsv, uint8_t* pBgr, int nPixels)
{
    Planes hsv, bgr;
    for (int x = 0; x < nPixels; x += kStrip) {
        const int n = std::min(nPixels - x, kStrip);
        Split(pHsv + 3 * x, n, hsv);
        ToBgr(hsv, n, bgr);
        Join(bgr, n, pBgr + 3 * x);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(BgrToHsvPixels);
HWY_EXPORT(HsvToBgrPixels);

void BgrToHsvRow(const uint8_t* pBgr, uint8_t* pHsv, int nPixels)
{
    HWY_DYNAMIC_DISPATCH(BgrToHsvPixels)(pBgr, pHsv, nPixels);
}

void HsvToBgrRow(const uint8_t* pHsv, uint8_t* pBgr, int nPixels)
{
    HWY_DYNAMIC_DISPATCH(HsvToBgrPixels)(pHsv, pBgr, nPixels);
}

WideHsv WideToHsv(int32_t b, int32_t g, int32_t r)
{
    const int32_t nValue = std::max({b, g, r});
    const int32_t nSpread = nValue - std::min({b, g, r});
    if (nValue == 0) return {0, 0, 0};
    const int32_t nSaturation = 255 * nSpread / nValue;
    if (nSaturation == 0) return {0, 0, nValue};
    int32_t nHue = 171 + 43 * (r - g) / nSpread;
    if (nValue == g) nHue = 85 + 43 * (b - r) / nSpread;
    if (nValue == r) nHue = 43 * (g - b) / nSpread;
    return {static_cast<uint8_t>(nHue), static_cast<uint8_t>(nSaturation), nValue};
}

void BgrToHsvRowScalar(const uint8_t* pBgr, uint8_t* pHsv, int nPixels)
{
    for (int i = 0; i < 3 * nPixels; i += 3) {
        const WideHsv hsv = WideToHsv(pBgr[i], pBgr[i + 1], pBgr[i + 2]);
        pHsv[i] = hsv.nHue;
        pHsv[i + 1] = hsv.nSaturation;
        pHsv[i + 2] = static_cast<uint8_t>(hsv.nValue);
    }
}

void HsvToBgrRowScalar(const uint8_t* pHsv, uint8_t* pBgr, int nPixels)
{
    for (int i = 0; i < 3 * nPixels; i += 3) {
        const int h = pHsv[i], s = pHsv[i + 1], v = pHsv[i + 2];
        const int nRem = 6 * (h % 43);
        const int p = v * (255 - s) / 256, q = v * (255 - s * nRem / 256) / 256;
        const int t = v * (255 - s * (255 - nRem) / 256) / 256;
        const int vRegions[6][3] = {{p, t, v}, {p, v, q}, {t, v, p}, {v, q, p}, {v, p, t}, {q, p, v}};  // B, G, R
        for (int c = 0; c < 3; ++c) pBgr[i + c] = static_cast<uint8_t>(s == 0 ? v : vRegions[h / 43][c]);
    }
}

bool RGB2HSV(const CImage& rgb, CImage& hsv)
{
    const StageTimer timer("===========RGB2HSV");
    const bool bDone = rgb.nDim == 3 && hsv.Allocate(rgb.nWidth, rgb.nHeight);
    if (bDone && !rgb.Empty()) {
        ParallelRows(rgb.nHeight, [&](RowBlock rows) {
            for (int y = rows.nBegin; y < rows.nEnd; ++y) BgrToHsvRow(rgb.Row(y), hsv.Row(y), rgb.nWidth);
        });
    }
    return bDone;
}

}  // namespace vkr
#endif
