#include "foundation/yuv_convert.h"

#include <utility>

#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// Luma and one chroma pair per two pixels.
void InterleaveReplicated(const uint8_t* pLuma, const uint8_t* pPairs, uint8_t* pDst, int w)
{
    for (int x = 0; x < w; x += 2) {
        for (int i = 0; i < 2; ++i) {
            pDst[3 * (x + i)] = pLuma[x + i];
            pDst[3 * (x + i) + 1] = pPairs[x];
            pDst[3 * (x + i) + 2] = pPairs[x + 1];
        }
    }
}

// A chroma row at full width, pairs still interleaved: sums of 4 times the sample, 0 .. 1020. w is even.
void WidenPairs(const uint8_t* pPairs, uint16_t* pLine, int w)
{
    for (int c = 0; c < 2; ++c) {
        pLine[c] = static_cast<uint16_t>(4 * pPairs[c]);
        pLine[2 * w - 2 + c] = static_cast<uint16_t>(4 * pPairs[w - 2 + c]);
    }
    for (int i = 0; i + 2 < w; i += 2) {
        for (int c = 0; c < 2; ++c) {
            const int nHere = pPairs[i + c], nNext = pPairs[i + 2 + c];
            pLine[2 * i + 2 + c] = static_cast<uint16_t>(3 * nHere + nNext);
            pLine[2 * i + 4 + c] = static_cast<uint16_t>(nHere + 3 * nNext);
        }
    }
}

// First and last row of the picture: one line alone, truncated.
void InterleaveEdge(const uint8_t* pLuma, const uint16_t* pLine, uint8_t* pDst, int w)
{
    for (int x = 0; x < w; ++x) {
        pDst[3 * x] = pLuma[x];
        pDst[3 * x + 1] = static_cast<uint8_t>(pLine[2 * x] >> 2);
        pDst[3 * x + 2] = static_cast<uint8_t>(pLine[2 * x + 1] >> 2);
    }
}

// A row inside: 3 parts of the nearer line and 1 of the farther, rounded.
void InterleaveBlend(const uint8_t* pLuma, const uint16_t* pNear, const uint16_t* pFar, uint8_t* pDst, int w)
{
    for (int x = 0; x < w; ++x) {
        pDst[3 * x] = pLuma[x];
        pDst[3 * x + 1] = static_cast<uint8_t>((3 * pNear[2 * x] + pFar[2 * x] + 8) >> 4);
        pDst[3 * x + 2] = static_cast<uint8_t>((3 * pNear[2 * x + 1] + pFar[2 * x + 1] + 8) >> 4);
    }
}

void Replicate(const CYuvImage& src, CImage& dst)
{
    ParallelRows(src.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            InterleaveReplicated(src.RowY(y), src.RowUV(y / 2), dst.Row(y), src.nWidth);
        }
    });
}

// Rows 2 * i + 1 and 2 * i + 2 lie between chroma rows i and i + 1; each block widens the chroma rows it needs.
void Interpolate(const CYuvImage& src, CImage& dst, HeapBuffer<uint16_t>& lines)
{
    const int w = src.nWidth, h = src.nHeight;
    ParallelRows(h / 2 - 1, [&](RowBlock pairs) {
        uint16_t* pUpper = lines.Data() + size_t{4} * w * pairs.nIndex;  // two lines of this thread's own
        uint16_t* pLower = pUpper + size_t{2} * w;
        WidenPairs(src.RowUV(pairs.nBegin), pUpper, w);
        for (int i = pairs.nBegin; i < pairs.nEnd; ++i) {
            WidenPairs(src.RowUV(i + 1), pLower, w);
            InterleaveBlend(src.RowY(2 * i + 1), pUpper, pLower, dst.Row(2 * i + 1), w);
            InterleaveBlend(src.RowY(2 * i + 2), pLower, pUpper, dst.Row(2 * i + 2), w);
            std::swap(pUpper, pLower);
        }
    });
    WidenPairs(src.RowUV(0), lines.Data(), w);
    InterleaveEdge(src.RowY(0), lines.Data(), dst.Row(0), w);
    WidenPairs(src.RowUV(h / 2 - 1), lines.Data(), w);
    InterleaveEdge(src.RowY(h - 1), lines.Data(), dst.Row(h - 1), w);
}

// Two rows of pixels to two rows of luma and one of chroma. nSum1 and nSum2 hold what the quotients by 4 have dropped
// so far, 0 .. 3, and run on from row to row.
void PackRowPair(const uint8_t* pTop, const uint8_t* pBottom, CYuvImage& dst, int y, int& nSum1, int& nSum2)
{
    uint8_t* const pLumaTop = dst.RowY(y);
    uint8_t* const pLumaBottom = dst.RowY(y + 1);
    uint8_t* const pPairs = dst.RowUV(y / 2);
    for (int x = 0; x < dst.nWidth; x += 2) {
        const uint8_t *t = pTop + 3 * x, *b = pBottom + 3 * x;
        pLumaTop[x] = t[0];
        pLumaTop[x + 1] = t[3];
        pLumaBottom[x] = b[0];
        pLumaBottom[x + 1] = b[3];
        nSum1 += t[1] + t[4] + b[1] + b[4];
        nSum2 += t[2] + t[5] + b[2] + b[5];
        pPairs[x] = static_cast<uint8_t>(nSum1 >> 2);
        pPairs[x + 1] = static_cast<uint8_t>(nSum2 >> 2);
        nSum1 &= 3;
        nSum2 &= 3;
    }
}

}  // namespace

bool ConvertYuvToImage(const CYuvImage& src, CImage& dst, int nMode)
{
    HeapBuffer<uint16_t> lines;
    const bool bLines = nMode != 0 || lines.Allocate(size_t{4} * src.nWidth * MaxTeam());
    if (src.Empty() || !bLines || !dst.Allocate(src.nWidth, src.nHeight)) {
        dst.Release();
        return false;
    }
    if (nMode != 0) {
        Replicate(src, dst);
    } else {
        Interpolate(src, dst, lines);
    }
    return true;
}

bool ConvertImageToYuv(CYuvImage& dst, const CImage& src)
{
    if (src.Empty() || src.nDim != 3 || !dst.Allocate(src.nWidth, src.nHeight)) {
        dst.Release();
        return false;
    }
    int nSum1 = 0, nSum2 = 0;
    for (int y = 0; y < dst.nHeight; y += 2) PackRowPair(src.Row(y), src.Row(y + 1), dst, y, nSum1, nSum2);
    return true;
}

}  // namespace vkr
