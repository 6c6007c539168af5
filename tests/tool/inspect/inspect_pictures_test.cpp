#include "inspect/inspect_pictures.h"

#include <gtest/gtest.h>

namespace vkr::tool {

namespace {

Raster Filled(int w, int h, const Bytes& vPixel)
{
    Raster raster;
    raster.Resize(w, h, static_cast<int>(vPixel.size()));
    for (size_t i = 0; i < raster.vSamples.size(); ++i) raster.vSamples[i] = vPixel[i % vPixel.size()];
    return raster;
}

Bytes PixelOf(const Raster& raster, int x, int y)
{
    return Bytes(raster.Row(y) + 3 * x, raster.Row(y) + 3 * x + 3);
}

}  // namespace

TEST(GhostOverlay, TintsByTheGhostValueAndLeavesTheRest)
{
    Raster ghost = Filled(4, 2, {0});  // a column more than the reference
    ghost.Row(0)[1] = 64;
    ghost.Row(1)[2] = 128;
    const Raster picture = GhostOverlay(Filled(3, 2, {90, 90, 90}), ghost);
    EXPECT_EQ((Bytes{90, 90, 90}), PixelOf(picture, 0, 0));
    EXPECT_EQ((Bytes{142, 62, 112}), PixelOf(picture, 1, 0));  // 80 / 256 of 255, 0, 160
    EXPECT_EQ((Bytes{193, 34, 134}), PixelOf(picture, 2, 1));  // 160 / 256 of it
    EXPECT_EQ((Bytes{117, 117, 117}), PixelOf(GhostOverlay(Filled(1, 1, {0, 200, 0}), Filled(1, 1, {0})), 0, 0));
}

// 13 columns are 7, 4 and 2 on the levels below; the second region reaches to the right border.
TEST(ChoiceOverlay, LaysACoarseLevelOnInTheColoursOfItsExposures)
{
    Raster shares = Filled(4, 2, {0, 0});
    shares.Row(0)[2 * 1 + 0] = 128;
    shares.Row(0)[2 * 3 + 1] = 200;  // borders of two regions of one exposure
    const Raster picture = ChoiceOverlay(Filled(13, 5, {0, 0, 0}), shares, 1);
    const auto tinted = [](Colour colour) {
        const auto part = [](int n) { return static_cast<uint8_t>((160 * n + 128) >> 8); };
        return Bytes{part(colour.nRed), part(colour.nGreen), part(colour.nBlue)};
    };
    for (int x = 0; x < 13; ++x) {
        const Bytes vWant = x < 4 ? Bytes{0, 0, 0} : x < 8 ? tinted(ExposureColour(1)) : Bytes{0, 0, 0};
        EXPECT_EQ(x < 12 ? vWant : tinted(ExposureColour(2)), PixelOf(picture, x, 3)) << x;
        EXPECT_EQ((Bytes{0, 0, 0}), PixelOf(picture, x, 4)) << x;
    }
}

TEST(WeightColours, MixesByTheWeights)
{
    Raster weights = Filled(3, 1, {0, 128, 0});
    weights.vSamples[3 + 0] = weights.vSamples[3 + 1] = 64;
    weights.vSamples[6 + 1] = 64;
    const Raster picture = WeightColours(weights, 0);
    const Colour a = ExposureColour(0), b = ExposureColour(1);
    const auto half = [](int n) { return static_cast<uint8_t>((n + 1) / 2); };
    EXPECT_EQ((Bytes{b.nRed, b.nGreen, b.nBlue}), PixelOf(picture, 0, 0));
    EXPECT_EQ((Bytes{half(a.nRed + b.nRed), half(a.nGreen + b.nGreen), half(a.nBlue + b.nBlue)}),
              PixelOf(picture, 1, 0));
    EXPECT_EQ((Bytes{half(b.nRed), half(b.nGreen), half(b.nBlue)}), PixelOf(picture, 2, 0));
}

TEST(Thumbnail, IsMadeOfLargePicturesOnly)
{
    EXPECT_EQ(1348, Thumbnail(Filled(1348, 10, {9})).nWidth);
    EXPECT_EQ(675, Thumbnail(Filled(10, 1350, {9})).nHeight);
    EXPECT_EQ(1000, Thumbnail(Filled(4000, 8, {9})).nWidth);
    EXPECT_EQ(4000, Thumbnail(Filled(4000, 2, {9})).nWidth);  // nothing would be left
}

}  // namespace vkr::tool
