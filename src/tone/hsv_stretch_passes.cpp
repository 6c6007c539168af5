#include "tone/hsv_stretch_passes.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/parallel_rows.h"
#include "tone/hsv_convert.h"

namespace vkr {

namespace {

constexpr int kStrip = 256;  // pixels

// Level above the black one within the levels and within nMost; 0 where they leave none.
int32_t LevelIndex(int32_t nValue, const StretchLevels& levels, int32_t nMost)
{
    const int32_t nSpan = std::max(levels.m_nHighLevel - levels.m_nLowLevel, 0);
    return Clamp(nValue - levels.m_nLowLevel, 0, std::min(nSpan, nMost));
}

// Colours of a strip with the high frequencies of its fused pixels.
void StoreWithDetail(const uint8_t* pHsv, const int16_t* pFused, uint8_t* pOut, int nPixels)
{
    HsvToBgrRow(pHsv, pOut, nPixels);
    for (int i = 0; i < nPixels; ++i, pFused += 6, pOut += 3) {
        for (int c = 0; c < 3; ++c) pOut[c] = ClampU8(pOut[c] + pFused[3 + c]);
    }
}

// A strip in hue and saturation, and its values, which may lie above 255.
void BaseToHsv(const int16_t* pFused, uint8_t* pHsv, int32_t* pValues, int nPixels)
{
    for (int i = 0; i < nPixels; ++i) {
        for (int c = 0; c < 3; ++c) pHsv[3 * i + c] = ClampU8(pFused[6 * i + c]);
        pValues[i] = std::max({pFused[6 * i], pFused[6 * i + 1], pFused[6 * i + 2], int16_t{0}});
    }
    BgrToHsvRow(pHsv, pHsv, nPixels);
    for (int i = 0; i < nPixels; ++i) {
        if (pValues[i] <= 255) continue;  // nothing was cut off
        const int16_t* p = pFused + 6 * i;
        const WideHsv wide =
            WideToHsv(std::max<int32_t>(p[0], 0), std::max<int32_t>(p[1], 0), std::max<int32_t>(p[2], 0));
        pHsv[3 * i] = wide.nHue;
        pHsv[3 * i + 1] = wide.nSaturation;
    }
}

// w, 256 = 1.0, of the reference's hue, over the shorter way around the circle.
uint8_t BlendHue(int32_t h, int32_t hr, int32_t w)
{
    if (hr > h + 127) return static_cast<uint8_t>(((256 - w) * (h + 256) + w * hr) >> 8);
    return static_cast<uint8_t>(((256 - w) * h + w * (h - 127 > hr ? hr + 256 : hr)) >> 8);
}

void GuideStrip(const int16_t* pFused, const uint8_t* pRef, const HsvWeights& weights, const ToneLut& toneLut,
                const StretchLevels& levels, uint8_t* pOut, int nPixels)
{
    uint8_t vHsv[3 * kStrip], vRefHsv[3 * kStrip];
    int32_t vValues[kStrip];
    BgrToHsvRow(pRef, vRefHsv, nPixels);
    BaseToHsv(pFused, vHsv, vValues, nPixels);
    for (int i = 0; i < nPixels; ++i) {
        uint8_t* p = vHsv + 3 * i;
        const uint8_t* pr = vRefHsv + 3 * i;
        const int32_t w = weights.vWeight[pr[2]];
        p[0] = BlendHue(p[0], pr[0], w);
        p[1] = static_cast<uint8_t>(((256 - w) * p[1] + w * pr[1]) >> 8);
        p[2] = toneLut.vValue[LevelIndex(vValues[i], levels, ToneLut::kEntries - 1)];
    }
    StoreWithDetail(vHsv, pFused, pOut, nPixels);
}

// The values of the skin-model pass, 0 .. 510, behind both curves.
struct ValueLut {
    uint8_t vValue[511];
};

ValueLut MakeValueLut(const GammaLut& gammaLut, const ToneLut& toneLut, const StretchLevels& levels)
{
    ValueLut lut;
    for (int32_t v = 0; v < 511; ++v) {
        lut.vValue[v] = toneLut.vValue[ClampU8(gammaLut.vValue[LevelIndex(v, levels, 255)])];
    }
    return lut;
}

// One pixel of hue, saturation, value; nExcess is what the value lies above 255.
void CorrectSkin(const SkinModel& model, const ValueLut& valueLut, int32_t nExcess, uint8_t* pHsv)
{
    const int32_t nValue = pHsv[2] + nExcess;
    const SkinWeights& w = model.weights;
    const int32_t nColour = (w.saturation.vWeight[pHsv[1]] * w.hue.vWeight[pHsv[0]]) >> 8;
    const int64_t nSkin = (w.value.vWeight[std::min(nValue, 255)] * nColour) >> 8;
    const int64_t nGain = model.backFix.nSatGain * (256 - nSkin) + model.faceFix.nSatGain * nSkin;
    const int64_t nShift = (model.backFix.nHueFix * (256 - nSkin) + model.faceFix.nHueFix * nSkin + 128) >> 16;
    pHsv[0] = static_cast<uint8_t>(pHsv[0] + std::clamp<int64_t>(nShift, -model.nMostHueShift, model.nMostHueShift));
    pHsv[1] = static_cast<uint8_t>(std::clamp<int64_t>((nGain * pHsv[1] + 256) >> 17, 0, 255));
    if (pHsv[1] != 0) pHsv[2] = valueLut.vValue[nValue];
}

void SkinStrip(const int16_t* pFused, const uint8_t* pHsv, const uint8_t* pExcess, const SkinModel& model,
               const ValueLut& valueLut, uint8_t* pOut, int nPixels)
{
    uint8_t vHsv[3 * kStrip];
    std::copy_n(pHsv, 3 * nPixels, vHsv);
    for (int i = 0; i < nPixels; ++i) CorrectSkin(model, valueLut, pExcess[i], vHsv + 3 * i);
    StoreWithDetail(vHsv, pFused, pOut, nPixels);
}

// Calls fn(y, x, n) for strips of n pixels of all rows, on the team.
template <class Fn>
void ForStrips(const CImage& out, const Fn& fn)
{
    ParallelRows(out.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            for (int x = 0; x < out.nWidth; x += kStrip) fn(y, x, std::min(out.nWidth - x, kStrip));
        }
    });
}

}  // namespace

void ReferenceGuidedPass(const CShortImage& fused, const CImage& reference, const HsvWeights& weights,
                         const ToneLut& toneLut, const StretchLevels& levels, CImage& out)
{
    ForStrips(out, [&](int y, int x, int n) {
        GuideStrip(fused.Row(y) + 6 * x, reference.Row(y) + 3 * x, weights, toneLut, levels, out.Row(y) + 3 * x, n);
    });
}

void SkinModelPass(const CShortImage& fused, const CImage& hsv, const CImage& excess, const SkinModel& model,
                   const GammaLut& gammaLut, const ToneLut& toneLut, const StretchLevels& levels, CImage& out)
{
    const ValueLut valueLut = MakeValueLut(gammaLut, toneLut, levels);
    ForStrips(out, [&](int y, int x, int n) {
        SkinStrip(fused.Row(y) + 6 * x, hsv.Row(y) + 3 * x, excess.Row(y) + x, model, valueLut, out.Row(y) + 3 * x, n);
    });
}

}  // namespace vkr
