#include "ghosts/edge_coefficient.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace vkr {

namespace {

// Coefficients of a grey pixel, the same in all exposures.
std::vector<int> CoefsOf(int nGrey, int nRatio, const std::vector<uint8_t>& vOld, const std::vector<uint8_t>& vNew,
                         int nMaxGain)
{
    const int n = static_cast<int>(vOld.size());
    const std::vector<int32_t> vRatio(n, nRatio);
    auto pGains = std::make_unique<EdgeGains>();
    FillEdgeGains(*pGains, vRatio.data(), n, DisplayCurve{});
    const uint8_t vGrey = static_cast<uint8_t>(nGrey), vPixel[3] = {vGrey, vGrey, vGrey};
    const std::vector<const uint8_t*> vPixels(n, vPixel);
    std::vector<int16_t> vCoefs(n);
    EdgeCoefficients(*pGains, vOld.data(), vNew.data(), vPixels.data(), n, nMaxGain, vCoefs.data());
    return std::vector<int>(vCoefs.begin(), vCoefs.end());
}

using Coefs = std::vector<int>;

}  // namespace

TEST(EdgeCoefficients, RaiseTheDarkerExposureThatReceivedWeight)
{
    // A grey of 32 is linear 8; twice the light is shown as 56, 1.75 times as bright.
    EXPECT_EQ((Coefs{224, 128}), CoefsOf(32, 32, {0, 128}, {128, 0}, 255));
    EXPECT_EQ((Coefs{176, 128}), CoefsOf(32, 32, {0, 128}, {64, 64}, 255));  // half of the way
    EXPECT_EQ((Coefs{160, 128}), CoefsOf(32, 32, {0, 128}, {128, 0}, 160));  // limited
    // Seven ratios of 16.0 leave 32 bits: the largest number stands for them.
    EXPECT_EQ(255, CoefsOf(32, 256, {0, 0, 0, 0, 0, 0, 0, 128}, {128, 0, 0, 0, 0, 0, 0, 0}, 255)[0]);
    EXPECT_EQ((Coefs{128, 128}), CoefsOf(32, 32, {128, 0}, {0, 128}, 160));  // the other way
    EXPECT_EQ((Coefs{128, 128}), CoefsOf(32, 32, {0, 0}, {128, 0}, 160));    // there was no weight to move
    EXPECT_EQ((Coefs{128, 128}), CoefsOf(255, 32, {0, 128}, {128, 0}, 160));
    // Four times the light is linear 32, shown as 93. The middle one receives nothing, but weight passes it by.
    EXPECT_EQ((Coefs{372, 224, 128}), CoefsOf(32, 32, {0, 0, 128}, {128, 0, 0}, 400));
    // The two brighter ones keep their weight together; the middle one receives from the brightest.
    EXPECT_EQ((Coefs{128, 176, 128}), CoefsOf(32, 32, {0, 64, 64}, {0, 128, 0}, 400));
    // A grey of 4 is linear 1, one and a half times that is rounded to 2, shown as 8.
    EXPECT_EQ((Coefs{256, 128}), CoefsOf(4, 24, {0, 128}, {128, 0}, 400));
    // Black counts as 1, and no light is no light in any exposure. The ratio of 2^28 passes the axis.
    EXPECT_EQ((Coefs{128, 128}), CoefsOf(0, 32, {0, 128}, {128, 0}, 400));
    EXPECT_EQ(1020, CoefsOf(32, 256, {0, 0, 0, 0, 0, 0, 0, 9}, {9, 0, 0, 0, 0, 0, 0, 0}, 2000)[0]);  // 255 / 32
}

// 249 is linear 240, 17/16 of it 255: shown as 252, since the last segment of the axis runs on to 1023.
TEST(EdgeCoefficients, ReadLightAlongTheLongAxis)
{
    EXPECT_EQ(129, CoefsOf(249, 17, {0, 128}, {128, 0}, 160)[0]);
}

}  // namespace vkr
