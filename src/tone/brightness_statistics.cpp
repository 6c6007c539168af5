#include "tone/brightness_statistics.h"

#include <algorithm>
#include <atomic>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// Calls fn(brightness) for the pixels of rows; Measure makes a brightness of the samples of a pixel.
template <class Measure, class Fn>
void VisitRows(const CShortImage& image, RowBlock rows, const Measure& measure, const Fn& fn)
{
    for (int y = rows.nBegin; y < rows.nEnd; ++y) {
        const int16_t* pPixel = image.Row(y);
        for (int x = 0; x < image.nWidth; ++x, pPixel += image.nDim) fn(measure(pPixel));
    }
}

// The choice of the measure stands outside the loops: each becomes a loop of its own.
template <class Fn>
void VisitBrightness(const CShortImage& image, RowBlock rows, int32_t nType, const Fn& fn)
{
    const auto visit = [&](const auto& measure) { VisitRows(image, rows, measure, fn); };
    if (image.nDim < 3) return visit([](const int16_t* p) -> int32_t { return p[0]; });
    switch (nType) {
        case 0:
            return visit([](const int16_t* p) { return PixelBrightness(p[0], p[1], p[2], 0); });
        case 1:
            return visit([](const int16_t* p) { return PixelBrightness(p[0], p[1], p[2], 1); });
        case 2:
            return visit([](const int16_t* p) { return PixelBrightness(p[0], p[1], p[2], 2); });
        case 3:
            return visit([](const int16_t* p) { return PixelBrightness(p[0], p[1], p[2], 3); });
        default:
            return visit([](const int16_t* p) -> int32_t { return p[1]; });
    }
}

}  // namespace

int32_t PixelBrightness(int32_t b, int32_t g, int32_t r, int32_t nHistStatType)
{
    switch (nHistStatType) {
        case 0:
            return std::max({b, g, r});
        case 1:
            return std::min({b, g, r});
        case 2:
            return (b + g + r + 1) / 3;
        case 3:
            return (2 * b + 9 * g + 5 * r + 8) / 16;
        default:
            return g;
    }
}

int32_t GetMeanBrightness(const CShortImage& image, int32_t nHistStatType)
{
    std::atomic<int64_t> nTotal{0};
    ParallelRows(image.nHeight, [&](RowBlock rows) {
        int64_t nSum = 0;
        VisitBrightness(image, rows, nHistStatType, [&](int32_t v) { nSum += Clamp(v, 0, 255); });
        nTotal += nSum;
    });
    return static_cast<int32_t>(DivOrZero64(nTotal, int64_t{image.nWidth} * image.nHeight));
}

int32_t BrightnessBins(const ToneParams& params)
{
    return std::max(params.nMaxHighLevel - params.nMinLowLevel + 1, 0);
}

bool GetBrightnessHistogram(const CShortImage& image, const ToneParams& params, int32_t* pHist)
{
    const int32_t nBins = BrightnessBins(params);
    if (nBins == 0) return true;
    const int nTeam = MaxTeam();
    HeapBuffer<int32_t> counts;  // one histogram per thread
    if (!counts.AllocateZero(static_cast<size_t>(nTeam) * nBins)) return false;

    ParallelRows(image.nHeight, [&](RowBlock rows) {
        int32_t* pCount = counts.Data() + static_cast<size_t>(rows.nIndex) * nBins;
        const int32_t nFirst = params.nMinLowLevel;
        VisitBrightness(image, rows, params.nHistStatType,
                        [=](int32_t v) { ++pCount[Clamp(v - nFirst, 0, nBins - 1)]; });
    });
    for (int i = 0; i < nTeam; ++i) {
        for (int32_t n = 0; n < nBins; ++n) pHist[n] += counts[static_cast<size_t>(i) * nBins + n];
    }
    return true;
}

}  // namespace vkr
