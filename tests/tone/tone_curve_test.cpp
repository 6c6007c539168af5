#include "tone/tone_curve.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/quiet_lines.h"

namespace vkr {
namespace {

struct Curve {
    Curve(int32_t nIn, int32_t nOut, int32_t nMaxGamma = 150, int32_t bPreserve = 1)
    {
        LinesScope lines;
        ToneParams params;
        params.bBrightnessPRSV = bPreserve;
        params.nMaxGamma = nMaxGamma;
        bApplied = BuildGammaLut(nIn, nOut, params, lut);
        sLines = LinesScope::Text();
    }
    bool IsIdentity() const
    {
        for (int32_t i = 0; i < 256; ++i) {
            if (lut.vValue[i] != i) return false;
        }
        return true;
    }
    GammaLut lut;
    bool bApplied;
    std::string sLines;
};

TEST(BuildGammaLut, IsTheIdentityUnlessTheMeanHasDarkened)
{
    for (const Curve& curve :
         {Curve(100, 100), Curve(100, 130), Curve(-3, -90), Curve(400, 255), Curve(100, 50, 150, 0)}) {
        EXPECT_FALSE(curve.bApplied);
        EXPECT_TRUE(curve.IsIdentity());
        EXPECT_EQ(curve.sLines, "");
    }
}

TEST(BuildGammaLut, IsTheIdentityAtAWhiteMean)
{
    const Curve curve(255, 200);  // the logarithm of 1 below the line
    EXPECT_TRUE(curve.bApplied);
    EXPECT_EQ(curve.sLines, "gamma=1.000000\n");
    EXPECT_TRUE(curve.IsIdentity());
}

TEST(BuildGammaLut, HoldsGammaAtItsLimit)
{
    EXPECT_EQ(Curve(128, 40, 150).sLines, "gamma=1.500000\n");
    EXPECT_EQ(Curve(128, 40, 100).sLines, "gamma=1.000000\n");
    EXPECT_EQ(Curve(128, 100, 150).sLines, "gamma=1.358166\n");  // log(100 / 255) / log(128 / 255)
}

TEST(BuildGammaLut, TakesTheOutputMeanBackToTheInputMean)
{
    const Curve curve(140, 120);
    EXPECT_TRUE(curve.bApplied);
    EXPECT_EQ(curve.lut.vValue[120], 140);
    EXPECT_EQ(curve.lut.vValue[255], 255);
    for (int i = 1; i < 256; ++i) EXPECT_GE(curve.lut.vValue[i], curve.lut.vValue[i - 1]);
}

TEST(BuildGammaLut, AtMostDoublesAValue)
{
    const Curve curve(128, 20, 200);  // gamma 2
    const GammaLut& lut = curve.lut;
    for (int i = 0; i < 63; ++i) EXPECT_EQ(lut.vValue[i], 2 * i);
    EXPECT_EQ(lut.vValue[64], 128);   // 0.5 + 255 * sqrt(64 / 255) = 128.2
    EXPECT_EQ(lut.vValue[100], 160);  // 160.2
}

// Every curve that means and limits can ask for has the values of the C library's floats, whose last bit may differ.
TEST(BuildGammaLut, HasTheValuesOfTheCLibraryForAllMeans)
{
    LinesScope lines;
    ToneParams params;
    params.bBrightnessPRSV = 1;
    const auto ExpectPower = [&](int nIn, int nOut, float fGamma) {
        GammaLut lut;
        ASSERT_TRUE(BuildGammaLut(nIn, nOut, params, lut));
        for (int i = 0; i < 256; ++i) {
            const float v = 0.5F + std::pow(static_cast<float>(i) / 255.0F, 1.0F / fGamma) * 255.0F;
            ASSERT_EQ(std::min(static_cast<int>(v), 2 * i), lut.vValue[i]) << nIn << " " << nOut << " " << i;
        }
    };
    params.nMaxGamma = 200;
    for (int nIn = 2; nIn < 255; ++nIn) {
        for (int nOut = nIn - 1; nOut > 0; --nOut) {
            const float fGamma =
                std::log(static_cast<float>(nOut) / 255.0F) / std::log(static_cast<float>(nIn) / 255.0F);
            if (fGamma * 100.0F > 200.0F) break;
            ExpectPower(nIn, nOut, fGamma);
        }
    }
    for (params.nMaxGamma = 100; params.nMaxGamma <= 200; ++params.nMaxGamma) {
        ExpectPower(200, 1, static_cast<float>(params.nMaxGamma) / 100.0F);
    }
}

}  // namespace
}  // namespace vkr
