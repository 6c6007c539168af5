#include "ghosts/relinearize.h"

#include <algorithm>

#include "foundation/bmp.h"
#include "foundation/fixed_point.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/piecewise_linear.h"

namespace vkr {

namespace {

constexpr int kBrightest = 1023;  // end of the linear axis
constexpr int kMostWeight = 255 * kMaxExposures;

// The curve as tables, and the gain of every exposure: Q4, the brightest 1.0, the darkest has the largest.
struct RadianceTables {
    int64_t vGains[kMaxExposures];
    int32_t vLinear[256];
    uint8_t vDisplay[kBrightest + 1];
};

void FillTables(RadianceTables& tables, const int32_t* pRatio, int nExposureNum, const DisplayCurve& curve)
{
    constexpr int n = DisplayCurve::kNodes;
    tables.vGains[nExposureNum - 1] = 16;
    for (int k = nExposureNum - 2; k >= 0; --k)
        tables.vGains[k] = std::max<int64_t>((pRatio[k] * tables.vGains[k + 1] + 8) >> 4, 1);
    for (int v = 0; v < 256; ++v) tables.vLinear[v] = PiecewiseLinear(curve.m_LinearY, curve.m_LinearX, n, v);
    for (int v = 0; v <= kBrightest; ++v) {
        tables.vDisplay[v] = ClampU8(PiecewiseLinear(curve.m_LinearX, curve.m_LinearY, n, v));
    }
}

// Arithmetic for any gains: eight exposures of the largest ratio reach 2^32, their sums 2^52.
class WideMath {
public:
    using Sum = uint64_t;
    WideMath(const RadianceTables& tables, int /*nExposureNum*/) : m_tables(tables) {}
    Sum OverWeights(Sum nSum, uint32_t nWeights) const { return nSum / nWeights; }
    Sum OverGain(Sum nRadiance, int k) const { return nRadiance / static_cast<Sum>(m_tables.vGains[k]); }

private:
    const RadianceTables& m_tables;
};

// The same bytes without divisions: n / d = (n * factor) >> 42 with factor = 2^42 / d rounded up, which is off by less
// than 1 / d as long as n * d < 2^42. Sums stay below 2^31 and divisors below 2^11; means below 2^21 and gains below
// 2^13. No product passes 2^63, since a sum is at most the largest mean times its weights.
class NarrowMath {
public:
    using Sum = uint32_t;
    static bool Fits(const RadianceTables& tables, int nExposureNum)
    {
        const int64_t nMean = 255 * tables.vGains[0];
        return nMean < int64_t{1} << 21 && nMean * 255 * nExposureNum < int64_t{1} << 31;
    }
    NarrowMath(const RadianceTables& tables, int nExposureNum)
    {
        for (uint32_t i = 1; i <= 255U * static_cast<uint32_t>(nExposureNum); ++i) m_vByWeights[i] = Factor(i);
        for (int k = 0; k < nExposureNum; ++k) m_vByGain[k] = Factor(static_cast<uint64_t>(tables.vGains[k]));
    }
    Sum OverWeights(Sum nSum, uint32_t nWeights) const { return Times(nSum, m_vByWeights[nWeights]); }
    Sum OverGain(Sum nRadiance, int k) const { return Times(nRadiance, m_vByGain[k]); }

private:
    static constexpr int kShift = 42;
    static uint64_t Factor(uint64_t nDivisor) { return ((uint64_t{1} << kShift) + nDivisor - 1) / nDivisor; }
    static Sum Times(Sum n, uint64_t nFactor) { return static_cast<Sum>((n * nFactor) >> kShift); }

    uint64_t m_vByWeights[kMostWeight + 1];
    uint64_t m_vByGain[kMaxExposures];
};

// nCount pixels of every exposure, from vPixels on; their radiance tables hold gain * linear sample.
template <class Math>
void ReLinearizeRow(const Math& math, const typename Math::Sum (*vRadiance)[256], const uint8_t* vDisplay,
                    const uint8_t* pWeights, uint8_t* const* vPixels, int nCount, int nExposureNum)
{
    using Sum = typename Math::Sum;
    for (int x = 0; x < nCount; ++x, pWeights += nExposureNum) {
        Sum vSum[3] = {0, 0, 0};
        uint32_t nWeights = 0;
        for (int k = 0; k < nExposureNum; ++k) {
            const uint32_t nWeight = pWeights[k];
            const uint8_t* p = vPixels[k] + 3 * x;
            for (int c = 0; c < 3; ++c) vSum[c] += nWeight * vRadiance[k][p[c]];
            nWeights += nWeight;
        }
        if (nWeights == 0) continue;
        for (Sum& nSum : vSum) nSum = math.OverWeights(nSum, nWeights);
        for (int k = 0; k < nExposureNum; ++k) {
            uint8_t* p = vPixels[k] + 3 * x;
            for (int c = 0; c < 3; ++c) p[c] = vDisplay[std::min<Sum>(math.OverGain(vSum[c], k), kBrightest)];
        }
    }
}

template <class Math>
void ReLinearizePixels(const RadianceTables& tables, CImage* vFrames, const CImage& weights, int nExposureNum)
{
    using Sum = typename Math::Sum;
    const Math math(tables, nExposureNum);
    Sum vRadiance[kMaxExposures][256];
    for (int k = 0; k < nExposureNum; ++k) {
        for (int v = 0; v < 256; ++v) vRadiance[k][v] = static_cast<Sum>(tables.vGains[k] * tables.vLinear[v]);
    }
    ParallelRows(weights.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            uint8_t* vPixels[kMaxExposures];
            for (int k = 0; k < nExposureNum; ++k) vPixels[k] = vFrames[k].Row(y);
            ReLinearizeRow(math, vRadiance, tables.vDisplay, weights.Row(y), vPixels, weights.nWidth, nExposureNum);
        }
    });
}

bool PicturesFit(const CImage* vFrames, const CImage& weights, int nExposureNum)
{
    if (nExposureNum < 1 || nExposureNum > kMaxExposures || weights.Empty() || weights.nDim != nExposureNum) {
        return false;
    }
    return std::all_of(vFrames, vFrames + nExposureNum, [&](const CImage& frame) {
        return !frame.Empty() && frame.nDim == 3 && frame.nWidth == weights.nWidth && frame.nHeight == weights.nHeight;
    });
}

}  // namespace

void ReLinearize(CImage* vFrames, const CImage& level0Weights, const int32_t* pRatio, int nExposureNum,
                 const DisplayCurve& curve, const StageDumps& dumps)
{
    if (!PicturesFit(vFrames, level0Weights, nExposureNum)) return;
    for (int k = 0; k < nExposureNum; ++k) dumps.Save(vFrames[k], "ReLinearizeDump/Image_%d.bmp", k);
    RadianceTables tables;
    FillTables(tables, pRatio, nExposureNum, curve);
    if (NarrowMath::Fits(tables, nExposureNum)) {
        ReLinearizePixels<NarrowMath>(tables, vFrames, level0Weights, nExposureNum);
    } else {
        ReLinearizePixels<WideMath>(tables, vFrames, level0Weights, nExposureNum);
    }
    for (int k = 0; k < nExposureNum; ++k) dumps.Save(vFrames[k], "ReLinearizeDump/Image_%d_ReLinear.bmp", k);
}

}  // namespace vkr
