#include "burst/exposure_ratio.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

#include "foundation/piecewise_linear.h"
#include "pictures/picture_shift.h"

namespace vkr::tool {

namespace {

// Well exposed: below, one grey value is an eighth of the light and more; above, a camera begins to clip.
constexpr int kDarkest = 16, kBrightest = 240;
constexpr size_t kLeastShare = 1024;

// The light of every grey value, 0 .. 255, not rounded to the whole steps of the linear axis.
std::array<double, 256> LightOf(const DisplayCurve& curve)
{
    constexpr int kNodes = DisplayCurve::kNodes, kParts = 256;
    int32_t vFineX[kNodes];
    std::transform(curve.m_LinearX, curve.m_LinearX + kNodes, vFineX, [](int32_t x) { return x * kParts; });
    std::array<double, 256> vLight{};
    for (int v = 0; v < 256; ++v) {
        vLight[static_cast<size_t>(v)] = PiecewiseLinear(curve.m_LinearY, vFineX, kNodes, v) / double{kParts};
    }
    return vLight;
}

Raster GreenOf(const Raster& rgb)
{
    Raster green;
    green.Resize(rgb.nWidth, rgb.nHeight, 1);
    for (size_t i = 0; i < green.vSamples.size(); ++i) green.vSamples[i] = rgb.vSamples[3 * i + 1];
    return green;
}

// How often each pair of grey values stands at one place.
class PairCounts {
public:
    PairCounts() : m_vCounts(256 * 256) {}

    void AddRow(const uint8_t* pDarker, const uint8_t* pBrighter, int nSamples)
    {
        for (int i = 0; i < nSamples; ++i) ++m_vCounts[static_cast<size_t>(pDarker[i]) << 8 | pBrighter[i]];
    }
    size_t Count(int nDarker, int nBrighter) const { return m_vCounts[static_cast<size_t>(nDarker) << 8 | nBrighter]; }

private:
    std::vector<size_t> m_vCounts;
};

// What stands on top of each other once the shift is taken back.
PairCounts CountPairs(const Raster& darker, const Raster& brighter, Shift shift)
{
    const int nFirstX = std::max(-shift.nX, 0), nFirstY = std::max(-shift.nY, 0);
    const int nWidth = darker.nWidth - std::abs(shift.nX), nHeight = darker.nHeight - std::abs(shift.nY);
    PairCounts counts;
    for (int y = nFirstY; y < nFirstY + nHeight; ++y) {
        counts.AddRow(darker.Row(y) + 3 * nFirstX, brighter.Row(y + shift.nY) + 3 * (nFirstX + shift.nX), 3 * nWidth);
    }
    return counts;
}

// A ratio and how often it came.
using RatioCount = std::pair<double, size_t>;

std::vector<RatioCount> WellExposedRatios(const PairCounts& counts, const DisplayCurve& curve, size_t& nSamples)
{
    const std::array<double, 256> vLight = LightOf(curve);
    std::vector<RatioCount> vRatios;
    nSamples = 0;
    for (int a = kDarkest; a <= kBrightest; ++a) {
        for (int b = kDarkest; b <= kBrightest; ++b) {
            const size_t nCount = counts.Count(a, b);
            if (nCount == 0) continue;
            vRatios.emplace_back(vLight[static_cast<size_t>(b)] / vLight[static_cast<size_t>(a)], nCount);
            nSamples += nCount;
        }
    }
    return vRatios;
}

double MedianOf(std::vector<RatioCount> vRatios, size_t nSamples)
{
    std::sort(vRatios.begin(), vRatios.end());
    size_t nUpTo = 0;
    for (const auto& [fRatio, nCount] : vRatios) {
        nUpTo += nCount;
        if (2 * nUpTo >= nSamples) return fRatio;
    }
    return 0;
}

}  // namespace

int MeasureExposureRatio(const Raster& darker, const Raster& brighter, const DisplayCurve& curve)
{
    const Shift shift = FindShift(GreenOf(darker), GreenOf(brighter));
    size_t nSamples = 0;
    const std::vector<RatioCount> vRatios = WellExposedRatios(CountPairs(darker, brighter, shift), curve, nSamples);
    if (nSamples == 0 || nSamples < darker.vSamples.size() / kLeastShare) return 0;
    return static_cast<int>(std::lround(16 * MedianOf(vRatios, nSamples)));
}

}  // namespace vkr::tool
