#include "ghosts/edge_coefficient.h"

#include <algorithm>
#include <limits>

#include "foundation/piecewise_linear.h"

namespace vkr {

namespace {

// Exposure ratio of nDarker and nBrighter, Q4. Eight exposures of the largest ratio pass 32 bits.
int32_t RatioBetween(const int32_t* pRatio, int nDarker, int nBrighter)
{
    int64_t nProduct = 16;
    for (int i = nDarker; i < nBrighter; ++i) nProduct *= pRatio[i];
    return static_cast<int32_t>(
        std::min<int64_t>(nProduct >> (4 * (nBrighter - nDarker)), std::numeric_limits<int32_t>::max()));
}

// The display value that the brighter exposure would have shown for a luma of the darker one.
int32_t Brighten(int nLuma, int32_t nRatio, const DisplayCurve& curve)
{
    const int32_t nLinear = PiecewiseLinear(curve.m_LinearY, curve.m_LinearX10, DisplayCurve::kNodes, nLuma);
    const int64_t nLight = (int64_t{nRatio} * nLinear + 8) >> 4;
    const int32_t nShown = static_cast<int32_t>(std::min<int64_t>(nLight, std::numeric_limits<int32_t>::max()));
    return PiecewiseLinear(curve.m_LinearX10, curve.m_LinearY, DisplayCurve::kNodes, nShown);
}

// Shares of the weights, 1024 = 1.0; all 0 where the weights are.
void NormalizeShares(const uint8_t* pWeights, int nExposureNum, int32_t* pShares)
{
    int32_t nSum = 0;
    for (int k = 0; k < nExposureNum; ++k) nSum += pWeights[k];
    for (int k = 0; k < nExposureNum; ++k) pShares[k] = DivOrZero(pWeights[k] << 10, nSum);
}

}  // namespace

void FillEdgeGains(EdgeGains& gains, const int32_t* pRatio, int nExposureNum, const DisplayCurve& curve)
{
    for (int k = 0; k < nExposureNum; ++k) {
        for (int j = k + 1; j < nExposureNum; ++j) {
            const int32_t nRatio = RatioBetween(pRatio, k, j);
            for (int nLuma = 0; nLuma < 256; ++nLuma) {
                const int32_t nShown = Brighten(nLuma, nRatio, curve);
                gains.vByLuma[k][j][nLuma] = std::max(nShown * 128 / std::max(nLuma, 1) - 128, 0);
            }
        }
    }
}

void EdgeCoefficients(const EdgeGains& gains, const uint8_t* pOld, const uint8_t* pNew, const uint8_t* const* vPixels,
                      int nExposureNum, int nMaxGain, int16_t* pCoefs)
{
    int32_t vOld[kMaxExposures], vNew[kMaxExposures];
    NormalizeShares(pOld, nExposureNum, vOld);
    NormalizeShares(pNew, nExposureNum, vNew);
    int32_t nOldAbove = 0, nNewAbove = 0;  // shares of the exposures brighter than k
    for (int k = nExposureNum - 1; k >= 0; --k) {
        int32_t nGain = 0;
        if (nNewAbove < nOldAbove) {
            const uint8_t* p = vPixels[k];
            const int32_t nLuma = LumaOfBgr(p[0], p[1], p[2]);
            for (int j = k + 1; j < nExposureNum; ++j) {
                nGain += gains.vByLuma[k][j][nLuma] * std::max(vOld[j] - vNew[j], 0);
            }
        }
        pCoefs[k] = static_cast<int16_t>(std::min((nGain >> 10) + kWeightOne, nMaxGain));
        nOldAbove += vOld[k];
        nNewAbove += vNew[k];
    }
}

}  // namespace vkr
