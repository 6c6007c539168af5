#include "fusion/blend_weighted.h"

#include <gtest/gtest.h>

#include <vector>

namespace vkr {

// Worked out by hand: toward zero, sums of 0, and what the 16-bit accumulator of other counts than three loses.
TEST(BlendWeightedPixel, TruncatesTowardZeroAndWraps)
{
    const auto Blend = [](std::vector<int16_t> vSamples, std::vector<uint8_t> vWeights) {
        return BlendWeightedPixel(vSamples.data(), vWeights.data(), static_cast<int>(vSamples.size()));
    };
    EXPECT_EQ(2, Blend({3, 2, 2}, {127, 0, 1}));
    EXPECT_EQ(-2, Blend({-3, -2, -2}, {127, 0, 1}));
    EXPECT_EQ(0, Blend({9, 9, 9}, {0, 0, 0}));
    EXPECT_EQ(30000, Blend({30000, 30000, 30000}, {255, 255, 255}));
    EXPECT_EQ(100, Blend({200, 0}, {64, 64}));
    EXPECT_EQ(-64, Blend({448, 448}, {64, 64}));  // 57344 is read as -8192
    EXPECT_EQ(0, Blend({9}, {0}));
}

}  // namespace vkr
