#include "tone/hsv_stretch_tone.h"

#include <gtest/gtest.h>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "tone/hsv_stretch_passes.h"
#include "tone/slow_hsv.h"

namespace vkr {
namespace {

FaceToneParams ToneOfReference()
{
    FaceToneParams params;
    params.bHSVTone = 1;
    return params;
}

TEST(HsvWeights, FollowTheirBounds)
{
    LinesScope lines;
    FaceToneParams params = ToneOfReference();
    SkinWeights skin;
    BuildSkinWeights(params, skin);
    const auto Hue = [&](int x) { return skin.hue.vWeight[x]; };
    const auto Sat = [&](int x) { return skin.saturation.vWeight[x]; };
    EXPECT_EQ((std::vector<int>{Hue(3), Hue(4), Hue(6), Hue(7), Hue(18), Hue(19), Hue(21), Hue(22), Hue(255)}),
              (std::vector<int>{0, 12, 38, 256, 256, 38, 12, 0, 0}));  // over the 10 of saturation
    EXPECT_EQ((std::vector<int>{Sat(8), Sat(9), Sat(10), Sat(29), Sat(30), Sat(144), Sat(145), Sat(165), Sat(166)}),
              (std::vector<int>{0, 0, 12, 256, 256, 256, 256, 0, 0}));
    params.nHSVHTransit = 16;  // reaches back over 0
    params.nHSVSTransit = 0;
    BuildSkinWeights(params, skin);
    EXPECT_EQ((std::vector<int>{Hue(244), Hue(245), Hue(246), Hue(255), Hue(0), Hue(20), Hue(36)}),
              (std::vector<int>{0, 0, 8, 80, 0, 0, 0}));
    EXPECT_EQ((std::vector<int>{Sat(18), Sat(19), Sat(20), Sat(154), Sat(155)}), (std::vector<int>{0, 0, 256, 256, 0}));
    HsvWeights guide;
    BuildGuideWeights(params, guide);
    EXPECT_EQ((std::vector<int>{guide.vWeight[16], guide.vWeight[20], guide.vWeight[33], guide.vWeight[255]}),
              (std::vector<int>{0, 16, 72, 0}));
    EXPECT_TRUE(lines.Contains("HS Tone LUT: 0 0 "));
}

// A fused picture of warm colours, some of them below 0 or above 255, and its reference.
struct Pictures {
    TestShortImage fused;
    TestImage reference;

    Pictures(std::mt19937& rng, int w, int h)
    {
        FillRandom(rng, fused, w, h, 6, -30, 200);
        FillRandom(rng, reference, w, h, 3, 0, 255);
        const auto vHigh = RandomRow<int16_t>(rng, fused.Samples(), -40, 40);
        for (size_t i = 0; i < fused.Samples(); ++i) {
            if (i % 6 == 2) fused.pData[i] = static_cast<int16_t>(fused.pData[i] * 2 + 100);
            if (i % 6 >= 3) fused.pData[i] = vHigh[i];
        }
    }
};

// Calls fn for the base B, G, R of every pixel, which gives a colour, and adds the detail.
template <class Fn>
std::vector<uint8_t> SlowPass(const CShortImage& fused, const Fn& fn)
{
    std::vector<uint8_t> vOut;
    for (size_t n = 0; n < fused.Samples() / 6; ++n) {
        const int16_t* p = fused.pData + 6 * n;
        const std::array<uint8_t, 3> bgr =
            fn(n, std::max<int>(p[0], 0), std::max<int>(p[1], 0), std::max<int>(p[2], 0));
        for (size_t c = 0; c < 3; ++c) vOut.push_back(static_cast<uint8_t>(std::clamp(bgr[c] + p[3 + c], 0, 255)));
    }
    return vOut;
}

ToneLut SomeCurve()
{
    ToneLut lut{};
    for (int i = 0; i < ToneLut::kEntries; ++i) lut.vValue[i] = static_cast<uint8_t>(std::min(i * 3 / 4, 255));
    return lut;
}

TEST(ReferenceGuidedPass, EqualsTheSlowWritingFromAnyTeam)
{
    LinesScope lines;
    std::mt19937 rng(97);
    const ToneLut lut = SomeCurve();
    HsvWeights weights;
    BuildGuideWeights(ToneOfReference(), weights);
    for (const StretchLevels levels : {StretchLevels{-20, 280}, {30, 20}}) {
        const Pictures in(rng, 270, 7);
        const auto Slow = [&](size_t n, int b, int g, int r) {
            const uint8_t* pRef = in.reference.pData + 3 * n;
            const auto ref = SlowBgrToHsv(pRef[0], pRef[1], pRef[2]), own = SlowBgrToHsv(b, g, r);
            const int w = weights.vWeight[ref[2]];
            int h = own[0], hr = ref[0];
            if (hr > h + 127) {
                h += 256;
            } else if (hr < h - 127) {
                hr += 256;
            }
            const int nSpan = std::max(levels.m_nHighLevel - levels.m_nLowLevel, 0);
            return SlowHsvToBgr((((256 - w) * h + w * hr) >> 8) & 255, ((256 - w) * own[1] + w * ref[1]) >> 8,
                                lut.vValue[std::clamp(own[2] - levels.m_nLowLevel, 0, nSpan)]);
        };
        const std::vector<uint8_t> vWant = SlowPass(in.fused, Slow);
        TestImage out;
        FillConstant(out, 270, 7, 3, 0);
        ForThreads([&](int) {
            ReferenceGuidedPass(in.fused, in.reference, weights, lut, levels, out);
            EXPECT_EQ(Samples(out), vWant);
        });
    }
}

TEST(SkinModelPass, EqualsTheSlowWritingFromAnyTeam)
{
    LinesScope lines;
    std::mt19937 rng(98);
    const ToneLut lut = SomeCurve();
    GammaLut gamma;
    for (int i = 0; i < 256; ++i) gamma.vValue[i] = std::min(255, i + i / 8);
    const StretchLevels levels = {-20, 280};
    const Pictures in(rng, 270, 7);
    SkinModel model;
    model.nMostHueShift = 2;
    BuildSkinWeights(ToneOfReference(), model.weights);
    TestImage hsv, excess, out;
    FillConstant(hsv, 270, 7, 3, 0);
    FillConstant(excess, 270, 7, 1, 0);
    FillConstant(out, 270, 7, 3, 0);
    GetFaceAndBackgroundDiffHSV({0, 0, 100, 6}, in.reference, in.fused, hsv, excess, model.backFix, model.faceFix);
    for (const HSVFix& fix : {HSVFix{300, 700}, HSVFix{-900, 1}, HSVFix{-1, 700}}) {
        model.faceFix = fix;
        if (fix.nHueFix == -1) model.backFix.nHueFix = 0;  // the shift is rounded up to a half of the skin
        const auto Slow = [&](size_t, int b, int g, int r) {
            const auto own = SlowBgrToHsv(std::min(b, 255), std::min(g, 255), std::min(r, 255));
            const int v = own[2] + (std::max(b, std::max(g, r)) > 255 ? std::max(b, std::max(g, r)) - 255 : 0);
            const int wc = model.weights.saturation.vWeight[own[1]] * model.weights.hue.vWeight[own[0]] / 256;
            const int w = model.weights.value.vWeight[std::min(v, 255)] * wc / 256;
            const int s = ((model.backFix.nSatGain * (256 - w) + fix.nSatGain * w) * own[1] + 256) >> 17;
            const int d = (model.backFix.nHueFix * (256 - w) + fix.nHueFix * w + 128) >> 16;
            const int nTone = lut.vValue[gamma.vValue[std::clamp(v - levels.m_nLowLevel, 0, 255)]];
            return SlowHsvToBgr((own[0] + std::clamp(d, -2, 2)) & 255, std::clamp(s, 0, 255), s <= 0 ? own[2] : nTone);
        };
        const std::vector<uint8_t> vWant = SlowPass(in.fused, Slow);
        ForThreads([&](int) {
            SkinModelPass(in.fused, hsv, excess, model, gamma, lut, levels, out);
            EXPECT_EQ(Samples(out), vWant);
        });
    }
}

// Levels, bounds and samples of every kind: nothing is read or written elsewhere, and any team gives the same bytes.
TEST(HSVStretchTone, ServesEverySetting)
{
    LinesScope lines;
    std::mt19937 rng(99);
    Pictures in(rng, 33, 5);
    FillRandom(rng, in.fused, 33, 5, 6, -32768, 32767);
    for (int i = 0; i < 24; ++i) {
        FaceToneParams params = ToneOfReference();
        params.bHSP2PTone = i % 2;
        params.bHSVTone = i % 3 != 0;
        params.bHSVToneFace = i % 4 == 0;
        params.nHSVHLowThres = params.nHSVSLowThres = RandomRow<int>(rng, 1, 0, 255)[0];
        params.nHSVHTransit = params.nHSVVTransit = RandomRow<int>(rng, 1, 0, 255)[0];
        params.nHSVSTransit = i % 5;
        ToneParams tone;
        tone.nMinLowLevel = tone.nMaxLowLevel = RandomRow<int>(rng, 1, -255, 255)[0];
        tone.nMinHighLevel = tone.nMaxHighLevel = RandomRow<int>(rng, 1, 0, 512)[0];
        tone.nOutGammaYThres = 255;
        MeasuredFace face;
        if (i > 4) face = {{{60, 70, 200}, {}}, {{50, 90, 120}, {}}};
        std::vector<uint8_t> vFirst;
        ForThreads([&](int nThreads) {
            StretchLevels levels;
            TestImage out;
            ASSERT_TRUE(HSVStretchTone({{-9, 1, 40, 9}, in.fused, in.reference, CImage{}}, {tone, {}, params}, face,
                                       levels, out));
            if (nThreads == 1) vFirst = Samples(out);
            EXPECT_EQ(Samples(out), vFirst);
        });
    }
    TestImage out, small;
    FillConstant(small, 3, 3, 3, 9);
    StretchLevels levels;
    EXPECT_FALSE(HSVStretchTone({{}, in.fused, small, CImage{}}, {{}, {}, ToneOfReference()}, {}, levels, out));
    EXPECT_TRUE(out.Empty());
}

}  // namespace
}  // namespace vkr
