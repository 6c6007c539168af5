#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "foundation/piecewise_linear.h"
#include "fusion/blend_weighted.h"
#include "fusion/fusion_params.h"
#include "primitives/gaussian_pyramid.h"
#include "primitives/pyramid_levels.h"
#include "support/random_image.h"

namespace vkr {

// A second, slow writing of the pyramid fusion: the exposures interleaved in one picture of 3 * n channels, every level
// kept, sample by sample.
class ReferenceFusion {
public:
    ReferenceFusion(const CImage* vFrames, const CImage* vWeights, const CShortImage* vCoefs, int n,
                    const FusionParams& params, const PyramidParams& pyramid)
        : m_nExposureNum(n), m_params(params), m_pyramid(pyramid)
    {
        Interleave(vFrames);
        const int nTop = BuildLevels(vCoefs);
        if (nTop == 0) return;
        TestShortImage fused, up;
        Blend(m_vGauss[nTop], vWeights[nTop], fused);
        for (int i = nTop - 1; i >= 0; --i) {
            TestShortImage detail;
            Blend(m_vLaplacian[i], vWeights[i], detail);
            DoubleShort(fused, up, m_pyramid.bPyramidFilter, m_pyramid.bUpScaleImageDither);
            if (i == 0) Merge(up, detail);
            Add(up, detail, fused);
        }
    }

    std::vector<int16_t> m_vResult;  // six samples a pixel; empty where level 0 is the top level

private:
    void Interleave(const CImage* vFrames)
    {
        const int n = m_nExposureNum;
        m_vGauss[0].AllocateDim(vFrames[0].nWidth, vFrames[0].nHeight, 3 * n);
        for (size_t i = 0; i < m_vGauss[0].Samples(); ++i) {
            m_vGauss[0].pData[i] = vFrames[i / 3 % n].pData[i / (3 * n) * 3 + i % 3];
        }
    }

    int BuildLevels(const CShortImage* vCoefs)
    {
        const int nStop = 1 << m_pyramid.nTopLevel;
        int i = 0;
        for (; m_vGauss[i].nWidth > nStop && m_vGauss[i].nHeight > nStop; ++i) {
            HalveImage(m_vGauss[i], m_vGauss[i + 1], m_pyramid.bPyramidFilter, m_pyramid.bDownScaleImageDither);
            TestImage up;
            DoubleImage(m_vGauss[i + 1], up, m_pyramid.bPyramidFilter, m_pyramid.bUpScaleImageDither);
            Subtract(i, up, vCoefs[i]);
        }
        return i;
    }

    void Subtract(int i, const CImage& up, const CShortImage& coefs)
    {
        const CImage& level = m_vGauss[i];
        CShortImage& detail = m_vLaplacian[i];
        detail.AllocateDim(level.nWidth, level.nHeight, level.nDim);
        const bool bCoefs = m_params.bEdgeCompensateEnable && m_params.nMinDeghostLevel <= i &&
                            i <= m_params.nMaxDeghostLevel && coefs.pData != nullptr;
        for (int y = 0; y < level.nHeight; ++y) {
            for (int x = 0; x < level.RowSamples(); ++x) {
                const int nPixel = x / level.nDim, k = x % level.nDim / 3;
                const uint8_t* pUp = up.Row(y) + x - x % 3;
                int16_t v = static_cast<int16_t>(level.Row(y)[x] - up.Row(y)[x]);
                v = static_cast<int16_t>(Boosted(i, pUp, v));
                if (m_params.bExtendHL && m_nExposureNum == 1) v = static_cast<int16_t>(Lifted(i, pUp, v));
                if (bCoefs) v = static_cast<int16_t>(coefs.Row(y)[nPixel * coefs.nDim + k] * v / 128);
                detail.Row(y)[x] = v;
            }
        }
    }

    int Boosted(int i, const uint8_t* pUp, int v) const
    {
        if (!m_params.bShadowDetailEnhanceEnable || i > 7 || m_params.nLevelSharpen[i] == 0) return v;
        const int nLuma = (9 * pUp[1] + 2 * pUp[0] + 5 * pUp[2] + 8) / 16;
        const int nGain = PiecewiseLinear(m_params.nSharpenYThList, m_params.nSharpenYWList, 8, nLuma);
        return ((m_params.nLevelSharpen[i] * (nGain - 16) >> 4) + 16) * v / 16;
    }

    int Lifted(int i, const uint8_t* pUp, int v) const
    {
        const int th = m_params.nExtendHLSatuThre[std::min(i, 7)], k = m_params.nExtendHLSlope[std::min(i, 7)];
        const int m = std::min({pUp[0], pUp[1], pUp[2]});
        if (m < th) return v;
        return m == 0 ? 0 : ((((m - th) * k) / (256 - th) + th) * 65536 / m * v) >> 16;
    }

    template <class Image>
    void Blend(const Image& level, const CImage& weights, CShortImage& out) const
    {
        const int n = m_nExposureNum;
        out.AllocateDim(level.nWidth, level.nHeight, 3);
        for (size_t i = 0; i < out.Samples(); ++i) {
            int16_t vPixel[kMaxExposures];
            for (int k = 0; k < n; ++k) vPixel[k] = level.pData[i / 3 * 3 * n + 3 * k + i % 3];
            out.pData[i] = BlendWeightedPixel(vPixel, weights.pData + i / 3 * n, n);
        }
    }

    static void Add(const CShortImage& up, const CShortImage& detail, CShortImage& out)
    {
        out.AllocateDim(detail.nWidth, detail.nHeight, 3);
        for (int y = 0; y < out.nHeight; ++y) {
            for (int x = 0; x < out.RowSamples(); ++x) {
                out.Row(y)[x] = static_cast<int16_t>(up.Row(y)[x] + detail.Row(y)[x]);
            }
        }
    }

    void Merge(const CShortImage& up, const CShortImage& detail)
    {
        for (int y = 0; y < detail.nHeight; ++y) {
            for (int x = 0; x < detail.nWidth; ++x) {
                m_vResult.insert(m_vResult.end(), up.Row(y) + 3 * x, up.Row(y) + 3 * x + 3);
                m_vResult.insert(m_vResult.end(), detail.Row(y) + 3 * x, detail.Row(y) + 3 * x + 3);
            }
        }
    }

    int m_nExposureNum;
    FusionParams m_params;
    PyramidParams m_pyramid;
    TestImage m_vGauss[kMaxLevels];
    TestShortImage m_vLaplacian[kMaxLevels];
};

}  // namespace vkr
