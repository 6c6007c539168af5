#pragma once

#include <algorithm>
#include <cstdint>

#include "face/face_box.h"

namespace vkr {

// Pixels of a box that may reach beyond the picture. A row outside is the nearest one, so that an edge row counts again
// for every row beyond it; a column outside runs on in memory into the neighbouring rows, within the picture.

// Rows further outside than this are as good as this far: more than any picture has, and sums over the counted pixels
// stay within 64 bits.
constexpr int32_t kMostRowsOutside = 1 << 17;

// How often row y of a picture of nHeight rows stands for a row y1 .. y2.
inline int64_t RowCount(const FaceBox& box, int32_t y, int32_t nHeight)
{
    const int64_t nMost = int64_t{nHeight} - 1 + kMostRowsOutside;
    const int64_t y1 = std::clamp<int64_t>(box.y1, -kMostRowsOutside, nMost);
    const int64_t y2 = std::clamp<int64_t>(box.y2, -kMostRowsOutside, nMost);
    const int64_t nFirst = y == 0 ? y1 : std::max<int64_t>(y1, y);
    const int64_t nLast = y == nHeight - 1 ? y2 : std::min<int64_t>(y2, y);
    return std::max<int64_t>(nLast - nFirst + 1, 0);
}

// Calls fn(nBegin, nEnd, nTimes), int64_t each, for runs of pixels (index in raster order, end exclusive) in ascending
// order, each pixel of the picture in one run at most: nTimes, at least 1, is how often the box holds each of them. An
// ordinary box gives its rows, once each. Any box will do; the work is bounded by the size of the picture.
template <class Fn>
void VisitBoxRuns(const FaceBox& box, int32_t nWidth, int32_t nHeight, const Fn& fn)
{
    const int64_t nPixels = int64_t{nWidth} * nHeight;
    const auto First = [&](int32_t y) { return std::clamp<int64_t>(int64_t{y} * nWidth + box.x1, 0, nPixels); };
    const auto End = [&](int32_t y) { return std::clamp<int64_t>(int64_t{y} * nWidth + box.x2 + 1, 0, nPixels); };
    if (box.x1 > box.x2 || box.y1 > box.y2) return;

    // Runs of the rows begin and end in ascending order: between two such places the count is the same.
    int64_t nTimes = 0, nAt = 0;
    int32_t nOpened = 0, nClosed = 0;  // rows whose run has begun, ended
    while (nClosed < nHeight) {
        const bool bOpen = nOpened < nHeight && First(nOpened) <= End(nClosed);
        const int64_t nNext = bOpen ? First(nOpened) : End(nClosed);
        if (nTimes > 0 && nNext > nAt) fn(nAt, nNext, nTimes);
        nAt = nNext;
        nTimes += bOpen ? RowCount(box, nOpened++, nHeight) : -RowCount(box, nClosed++, nHeight);
    }
}

}  // namespace vkr
