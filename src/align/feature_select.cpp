#include "align/feature_select.h"

#include <algorithm>
#include <cstddef>

#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

bool IsStrictMaximum(const RowView<float>& map, int x, int y)
{
    const float fCentre = map.Row(y)[x];
    for (int dy = -3; dy <= 3; ++dy) {
        const float* pRow = map.Row(y + dy) + x;
        for (int dx = -3; dx <= 3; ++dx) {
            if (pRow[dx] >= fCentre && (dx != 0 || dy != 0)) return false;
        }
    }
    return true;
}

// Maxima of map rows block.nBegin + 3 .. block.nEnd + 2; those beyond nCapacity are dropped.
int CollectBand(const RowView<float>& map, int nWidth, RowBlock block, FeaturePoint* pBand, int nCapacity)
{
    int nFound = 0;
    for (int y = block.nBegin + 3; y < block.nEnd + 3; ++y) {
        const float* pRow = map.Row(y);
        for (int x = 3; x < nWidth - 3; ++x) {
            if (!(pRow[x] > 0.0f) || !IsStrictMaximum(map, x, y)) continue;
            if (nFound == nCapacity) return nFound;
            pBand[nFound++] = {x, y, pRow[x], -1};
        }
    }
    return nFound;
}

// Two maxima differ by at least 4 in a coordinate: one a cell of 4 x 4 at most. Saves scratch in small pictures.
int MostMaxima(int nWidth, int nHeight, int nCapacity)
{
    const long long nCells = ((nWidth + 3LL) / 4) * ((nHeight + 3LL) / 4);
    return static_cast<int>(std::min<long long>(nCells, nCapacity));
}

}  // namespace

bool CollectMaxima(const RowView<float>& map, int nWidth, FeaturePoint* pFeatures, int& nCount, int nCapacity)
{
    nCount = 0;
    if (nWidth < 7 || map.nRows < 7 || nCapacity <= 0) return true;

    const int nMost = MostMaxima(nWidth, map.nRows, nCapacity);
    const size_t nTeam = static_cast<size_t>(MaxTeam());
    HeapBuffer<FeaturePoint> bands;
    HeapBuffer<int> counts;
    if (!bands.Allocate(nTeam * static_cast<size_t>(nMost)) || !counts.AllocateZero(nTeam)) return false;

    ParallelRows(map.nRows - 6, [&](RowBlock block) {
        const size_t nIndex = static_cast<size_t>(block.nIndex);
        FeaturePoint* pBand = bands.Data() + nIndex * static_cast<size_t>(nMost);
        counts[nIndex] = CollectBand(map, nWidth, block, pBand, nMost);
    });

    // The bands follow each other down the map. Full is full: what comes later is dropped, however strong.
    for (size_t i = 0; i < nTeam; ++i) {
        const FeaturePoint* pBand = bands.Data() + i * static_cast<size_t>(nMost);
        const int nTaken = std::min(counts[i], nCapacity - nCount);
        std::copy(pBand, pBand + nTaken, pFeatures + nCount);
        nCount += nTaken;
    }
    return true;
}

void SortByResponse(FeaturePoint* pFeatures, int nCount)
{
    std::sort(pFeatures, pFeatures + nCount, [](const FeaturePoint& a, const FeaturePoint& b) {
        if (a.fResponse != b.fResponse) return a.fResponse < b.fResponse;
        return a.y != b.y ? a.y < b.y : a.x < b.x;
    });
}

}  // namespace vkr
