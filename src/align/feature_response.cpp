#include "align/feature_response.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

struct RingPoint {
    int dx, dy;
};

// Clockwise from the top. Points i, i + 4, i + 8, i + 12 are a quarter turn apart and form group i.
constexpr RingPoint kRing[16] = {{0, -3}, {1, -3}, {2, -2}, {3, -1}, {3, 0},  {3, 1},   {2, 2},   {1, 3},
                                 {0, 3},  {-1, 3}, {-2, 2}, {-3, 1}, {-3, 0}, {-3, -1}, {-2, -2}, {-1, -3}};

// The outer product of the row with itself sums to 256.
constexpr int kBinomial[5] = {1, 4, 6, 4, 1};

// Sums of up to 256 * 255^2 fit 32 bits and, being below 2^24, floats.
float WeightedMean(int32_t nSum)
{
    return static_cast<float>(nSum * (1.0 / 256));
}

// Samples nX - 3 .. nX + nWidth + 2 of a row, those outside the picture taken from its nearest edge.
void CopyPaddedRow(const CImage& level, int y, const FeatureRect& rect, uint8_t* pDst)
{
    const uint8_t* pSrc = level.Row(y);
    const int nLast = level.nWidth - 1;
    const int nFirst = std::max(rect.nX - 3, 0);
    const int nEnd = std::min(rect.nX + rect.nWidth + 3, static_cast<int>(level.nWidth));
    const int nLeft = nFirst - (rect.nX - 3);
    const int nRight = rect.nX + rect.nWidth + 3 - nEnd;
    std::memset(pDst, pSrc[0], static_cast<size_t>(nLeft));
    std::memcpy(pDst + nLeft, pSrc + nFirst, static_cast<size_t>(nEnd - nFirst));
    std::memset(pDst + nLeft + (nEnd - nFirst), pSrc[nLast], static_cast<size_t>(nRight));
}

float PixelResponse(WindowRows pRows, int x, const ResponseParams& params)
{
    if (!PassesRing(pRows, x, params)) return 0.0f;
    const float fResponse = HarrisResponse(pRows, x, params.fHarrisK);
    return static_cast<float>(params.nHarrisThre) > fResponse ? 0.0f : fResponse;
}

}  // namespace

bool PassesRing(WindowRows pRows, int x, const ResponseParams& params)
{
    const int nCentre = pRows[3][x + 3];
    const int nMargin = std::max(params.nThre, (params.nRatio * (255 - nCentre) + 64) >> 7);
    int nDarkInRing = 0;
    int nBrightInRing = 0;
    for (int nGroup = 0; nGroup < 4; ++nGroup) {
        int nDark = 0;
        int nBright = 0;
        for (int i = nGroup; i < 16; i += 4) {
            const int nSample = pRows[3 + kRing[i].dy][x + 3 + kRing[i].dx];
            nDark += nSample < nCentre - nMargin ? 1 : 0;
            nBright += nSample > nCentre + nMargin ? 1 : 0;
        }
        // One group may pass on dark points and the next on bright ones; the sums below decide.
        if (nDark < params.nPtThre1 && nBright < params.nPtThre1) return false;
        nDarkInRing += nDark;
        nBrightInRing += nBright;
    }
    return nDarkInRing >= params.nPtThre2 || nBrightInRing >= params.nPtThre2;
}

float HarrisResponse(WindowRows pRows, int x, float fHarrisK)
{
    int32_t nXX = 0;
    int32_t nYY = 0;
    int32_t nXY = 0;
    for (int j = 0; j < 5; ++j) {
        const uint8_t* pAbove = pRows[j] + x + 1;
        const uint8_t* pHere = pRows[j + 1] + x + 1;
        const uint8_t* pBelow = pRows[j + 2] + x + 1;
        for (int i = 0; i < 5; ++i) {
            const int nDx = pHere[i + 1] - pHere[i - 1];
            const int nDy = pBelow[i] - pAbove[i];
            const int nWeight = kBinomial[i] * kBinomial[j];
            nXX += nWeight * nDx * nDx;
            nYY += nWeight * nDy * nDy;
            nXY += nWeight * nDx * nDy;
        }
    }
    const float fA = WeightedMean(nXX);
    const float fB = WeightedMean(nYY);
    const float fC = WeightedMean(nXY);
    const float fTrace = fA + fB;
    const float fTraceSquared = fTrace * fTrace;
    return fA * fB - fC * fC - fHarrisK * fTraceSquared;
}

bool BuildResponseMap(const CImage& level, const FeatureRect& rect, const ResponseParams& params,
                      const RowView<float>& map)
{
    const size_t nStride = static_cast<size_t>(rect.nWidth) + 6;
    const int nTeam = MaxTeam();
    HeapBuffer<uint8_t> window;
    if (!window.Allocate(nStride * 7 * static_cast<size_t>(nTeam))) return false;
    const RowView<uint8_t> scratch{window.Data(), nStride, 7 * nTeam};

    ParallelRows(rect.nHeight, [&](RowBlock block) {
        uint8_t* vRows[7];
        for (int i = 0; i < 7; ++i) {
            vRows[i] = scratch.Row(7 * block.nIndex + i);
            CopyPaddedRow(level, rect.nY + block.nBegin - 3 + i, rect, vRows[i]);
        }
        for (int y = block.nBegin; y < block.nEnd; ++y) {
            float* pDst = map.Row(y);
            for (int x = 0; x < rect.nWidth; ++x) pDst[x] = PixelResponse(vRows, x, params);
            if (y + 1 == block.nEnd) break;
            std::rotate(vRows, vRows + 1, vRows + 7);
            CopyPaddedRow(level, rect.nY + y + 4, rect, vRows[6]);
        }
    });
    return true;
}

}  // namespace vkr
