#include "pictures/colour_convert.h"

#include <gtest/gtest.h>

#include <random>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

Raster Flat(int w, int h, uint8_t r, uint8_t g, uint8_t b)
{
    Raster rgb;
    rgb.Resize(w, h, 3);
    for (size_t i = 0; i < rgb.vSamples.size(); i += 3) {
        rgb.vSamples[i] = r;
        rgb.vSamples[i + 1] = g;
        rgb.vSamples[i + 2] = b;
    }
    return rgb;
}

// 3 x 2, one channel: 1 2 3 / 4 5 6.
Raster Numbered()
{
    Raster raster;
    raster.Resize(3, 2, 1);
    raster.vSamples = {1, 2, 3, 4, 5, 6};
    return raster;
}

}  // namespace

TEST(FrameFromRgb, KeepsGreyToTheBitBothWays)
{
    for (int n = 0; n < 256; ++n) {
        const auto nGrey = static_cast<uint8_t>(n);
        const Raster rgb = Flat(4, 4, nGrey, nGrey, nGrey);
        const Frame frame = FrameFromRgb(rgb, "");
        EXPECT_EQ(Bytes(16, nGrey), frame.vY);
        EXPECT_EQ(Bytes(8, 128), frame.vUV);
        EXPECT_EQ(rgb.vSamples, RgbFromFrame(frame).vSamples);
    }
}

// Y, Cb, Cr of the pure colours as the JPEG file format has them.
TEST(FrameFromRgb, KnowsThePureColours)
{
    const uint8_t vCases[][6] = {
        {255, 0, 0, 76, 85, 255}, {0, 255, 0, 150, 44, 21}, {0, 0, 255, 29, 255, 107}, {255, 255, 0, 226, 1, 149}};
    for (const auto& c : vCases) {
        const Frame frame = FrameFromRgb(Flat(2, 2, c[0], c[1], c[2]), "");
        EXPECT_EQ(Bytes(4, c[3]), frame.vY);
        EXPECT_EQ((Bytes{c[4], c[5]}), frame.vUV);
    }
}

TEST(FrameFromRgb, ComesBackWithinRounding)
{
    std::mt19937 rng(3);
    for (int i = 0; i < 500; ++i) {
        const Raster rgb =
            Flat(2, 2, static_cast<uint8_t>(rng()), static_cast<uint8_t>(rng()), static_cast<uint8_t>(rng()));
        const Raster back = RgbFromFrame(FrameFromRgb(rgb, ""));
        for (size_t k = 0; k < rgb.vSamples.size(); ++k) ASSERT_NEAR(rgb.vSamples[k], back.vSamples[k], 2);
    }
}

TEST(FrameFromRgb, AveragesChromaOverFourPixelsAndDropsOddEdges)
{
    Raster rgb = Flat(5, 3, 90, 90, 90);
    for (const int x : {2, 4}) rgb.Row(1)[3 * x + 2] = 250;  // blue: one of the four of the second pair; the odd column
    const Frame frame = FrameFromRgb(rgb, "");
    ASSERT_EQ(4, frame.nWidth);
    ASSERT_EQ(2, frame.nHeight);
    EXPECT_EQ((Bytes{128, 128, 148, 125}), frame.vUV);  // 128 + 160 * 0.5 / 4, 128 - 160 * 0.0813 / 4
    EXPECT_THROW(FrameFromRgb(Flat(1, 4, 0, 0, 0), "thin"), BurstError);
}

TEST(RgbFromFrame, RaisesChromaByTheTriangle)
{
    Frame frame;
    frame.Resize(4, 2);
    frame.vY.assign(8, 128);
    frame.vUV = {128, 128, 128, 192};  // Cr steps by 64 between the two pairs
    const Raster rgb = RgbFromFrame(frame);
    const int vRed[] = {128, 128 + 22, 128 + 67, 128 + 90};  // 1.402 * 64 * (0, 1/4, 3/4, 1)
    for (int x = 0; x < 4; ++x) EXPECT_EQ(vRed[x], rgb.Row(0)[3 * x]) << x;
    frame.bCrFirst = true;  // now it is Cb
    const Raster swapped = RgbFromFrame(frame);
    EXPECT_EQ(128, swapped.Row(0)[9]);
    EXPECT_EQ(128 + 113, swapped.Row(0)[11]);  // 1.772 * 64
}

TEST(TurnUpright, FollowsTheEightOrientations)
{
    const Bytes vWant[] = {{1, 2, 3, 4, 5, 6}, {3, 2, 1, 6, 5, 4}, {6, 5, 4, 3, 2, 1}, {4, 5, 6, 1, 2, 3},
                           {1, 4, 2, 5, 3, 6}, {4, 1, 5, 2, 6, 3}, {6, 3, 5, 2, 4, 1}, {3, 6, 2, 5, 1, 4}};
    for (int n = 1; n <= 8; ++n) {
        const Raster upright = TurnUpright(Numbered(), n);
        EXPECT_EQ(vWant[n - 1], upright.vSamples) << n;
        EXPECT_EQ(n < 5 ? 3 : 2, upright.nWidth);
    }
}

TEST(ScaleDown, TakesRoundedMeansOfWholeCells)
{
    const Raster small = ScaleDown(Numbered(), 2);
    ASSERT_EQ(1, small.nWidth);
    EXPECT_EQ(Bytes{3}, small.vSamples);  // (1 + 2 + 4 + 5) / 4, and the third column dropped
    EXPECT_EQ((Bytes{9, 8, 7}), ScaleDown(Flat(6, 6, 9, 8, 7), 5).vSamples);
}

}  // namespace vkr::tool
