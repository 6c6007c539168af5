#include "burst/burst_order.h"

#include <gtest/gtest.h>

namespace vkr::tool {

using Order = std::vector<int>;

TEST(OrderBurst, TrustsExifOverTheMean)
{
    const BurstOrder order = OrderBurst({{0.1, 10}, {0.001, 200}, {0.01, 90}});
    EXPECT_TRUE(order.bByExif);
    EXPECT_EQ((Order{1, 2, 0}), order.vFrames);
}

TEST(OrderBurst, GoesByTheMeanWithoutAStrictOrder)
{
    const std::vector<FrameLight> vMissing = {{0.1, 120}, {0, 60}, {0.01, 30}};
    EXPECT_FALSE(OrderBurst(vMissing).bByExif);
    EXPECT_EQ((Order{2, 1, 0}), OrderBurst(vMissing).vFrames);
    const std::vector<FrameLight> vEqual = {{0.1, 120}, {0.1005, 60}, {0.4, 30}};  // half a percent is no step
    EXPECT_FALSE(OrderBurst(vEqual).bByExif);
    EXPECT_EQ((Order{2, 1, 0}), OrderBurst(vEqual).vFrames);
}

TEST(OrderBurst, KeepsTheOrderOfEqualFrames)
{
    EXPECT_EQ((Order{1, 0, 2}), OrderBurst({{0, 50}, {0, 20}, {0, 50}}).vFrames);
    EXPECT_EQ(Order{0}, OrderBurst({{0, 0}}).vFrames);
}

TEST(MiddleFrame, IsTheLowerOfTwo)
{
    const int vWant[] = {0, 0, 1, 1, 2, 2, 3, 3};
    for (int n = 1; n <= 8; ++n) EXPECT_EQ(vWant[n - 1], MiddleFrame(n)) << n;
}

}  // namespace vkr::tool
