#include "tone/face_tone_stretch.h"

#include <gtest/gtest.h>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "tone/face_curve.h"

namespace vkr {
namespace {

std::vector<int> Curve(const CurveAnchors& a, const StretchLevels& levels)
{
    LinesScope lines;
    ToneLut lut;
    BuildFaceCurve(a, levels, lut);
    return std::vector<int>(lut.vValue, lut.vValue + ToneLut::kEntries);
}

TEST(FaceCurve, GoesThroughItsFourPoints)
{
    const std::vector<int> v = Curve({90, 150, 68, 128}, {-32, 288});
    EXPECT_EQ(v[0], 0);
    EXPECT_EQ(v[50], 45);  // 90 over 100 levels
    EXPECT_EQ(v[99], 89);  // 89.1
    EXPECT_EQ(v[100], 90);
    EXPECT_EQ(v[131], 121);  // 60 over 60 levels
    EXPECT_EQ(v[160], 150);
    EXPECT_EQ(v[160 + 80], 203);  // 105 over 160 levels: 202.5, rounded up
    EXPECT_EQ(v[320], 255);
    EXPECT_EQ(v[321], 0);
    EXPECT_EQ(Curve({50, 200, 0, 256}, {-255, 512})[767], 255);  // the widest span
}

// Points that meet make slopes that are not finite.
TEST(FaceCurve, SaturatesAndTakesNoNumberForZero)
{
    EXPECT_EQ(Curve({90, 150, 68, 224}, {0, 224})[224], 0);    // the white level itself: 0 times infinity
    EXPECT_EQ(Curve({90, 150, 68, 224}, {0, 224})[223], 150);  // 149.6
    EXPECT_EQ(Curve({90, 150, 32, 128}, {32, 224})[0], 90);    // the face begins at the black level
    EXPECT_EQ(Curve({0, 300, 0, 100}, {0, 200})[100], 300 & 255);
    EXPECT_EQ(Curve({1, 2, 3, 4}, {200, 100}), std::vector<int>(768, 0));
}

TEST(FaceCurve, AnchorsLieBetweenMiddleAndGreatest)
{
    const SortedLevels ref = SortLevels({200, 100, 160});
    const auto MaxRef = [&](int32_t w) { return MakeAnchors(ref, {180, 90, 60}, w).nMaxRef; };
    EXPECT_EQ(MaxRef(0), 160);
    EXPECT_EQ(MaxRef(256), 200);
    EXPECT_EQ(MaxRef(85), 173);  // 160 + 40 * 85 / 256 = 173.28
    EXPECT_EQ(MakeAnchors(ref, {180, 90, 60}, 85).nMinRef, 86);
    EXPECT_EQ(MakeAnchors({0, 0, 0}, {180, 90, 60}, 85).nMinRef, 0);
}

TEST(BringFaceIntoRange, UsesTheFirstRuleThatApplies)
{
    const auto Ranged = [](int b, int g, int r) {
        FaceIntensity face = {{b, g, r}, {}};
        BringFaceIntoRange(FaceParams{}, face);
        return std::vector<int>(face.vLow, face.vLow + 3);
    };
    EXPECT_EQ(Ranged(240, 210, 250), (std::vector<int>{220, 192, 229}));  // blue; red stays above its bound
    EXPECT_EQ(Ranged(150, 190, 201), (std::vector<int>{149, 189, 200}));
    EXPECT_EQ(Ranged(60, 90, 201), (std::vector<int>{59, 89, 200}));  // a high bound goes first
    EXPECT_EQ(Ranged(90, 80, 150), (std::vector<int>{120, 106, 200}));
    EXPECT_EQ(Ranged(130, 90, 140), (std::vector<int>{144, 100, 155}));
    EXPECT_EQ(Ranged(0, 90, 140), (std::vector<int>{120, 0, 0}));
    EXPECT_EQ(Ranged(120, 100, 100), (std::vector<int>{120, 100, 100}));
}

TEST(FaceToneStretch, FoldsTheGammaIntoTheCurveAndTellsItsSteps)
{
    LinesScope lines;
    TestShortImage fused;
    TestImage reference;
    FillConstant(fused, 10, 10, 6, 100);
    ToneParams tone;
    tone.bKeepHighLightDetailEnable = tone.bKeepDarkDetailEnable = 0;
    tone.nLowLevelStep = tone.nHighLevelStep = 0;
    for (size_t i = 0; i < fused.Samples(); ++i) fused.pData[i] = static_cast<int16_t>(i % 6 < 3 ? 100 : 0);
    ForThreads([&](int) {
        LinesScope::Text().clear();
        TestImage out;
        StretchLevels levels = {40, 240};  // the mean of 100 would become 76
        MeasuredFace face;
        face.reference = {{130, 120, 140}, {}};
        face.fusion = {{90, 80, 100}, {}};
        ASSERT_TRUE(
            FaceToneStretch({{}, fused, reference, CImage{}}, {tone, FaceParams{}, {}, 0, 1}, face, levels, out));
        EXPECT_TRUE(lines.Contains("InMean=100\nnWidth = 10, nHeight = 10, nDim = 6\nOutMeanY bf=76\ngamma=1.29317"));
        EXPECT_TRUE(lines.Contains(
            "\nLowLevel = 40, HighLevel=240\nRefer  Face Intensity = [130, 120, 140]\n"
            "RefIntensity B 130 G 120 R 140\nFusionIntensity B 90 G 80 R 100\nHigh 140 Mid 130 Low 120 \n"
            "MinRef 114 MaxRef 133 MinFus 80 MaxFus 100 \nLUT:0 3 6 "));
        // 133 through the gamma: 255 * (133 / 255) ^ (1 / 1.293173) = 154.1.
        EXPECT_EQ(Samples(out), std::vector<uint8_t>(300, 154));
    });
}

TEST(FaceToneStretch, LeavesNothingOnFailure)
{
    LinesScope lines;
    TestShortImage fused;
    TestImage mask, out, reference;
    FillConstant(fused, 4, 4, 6, 300);
    FillConstant(mask, 4, 5, 1, 1);
    FillConstant(out, 4, 4, 3, 9);
    StretchLevels levels;
    MeasuredFace face;
    EXPECT_FALSE(
        FaceToneStretch({{}, fused, reference, mask}, {ToneParams{}, FaceParams{}, {}, 1, 1}, face, levels, out));
    EXPECT_TRUE(out.Empty());
}

}  // namespace
}  // namespace vkr
