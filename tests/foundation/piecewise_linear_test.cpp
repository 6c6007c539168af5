#include "foundation/piecewise_linear.h"

#include <gtest/gtest.h>

#include "foundation/fixed_point.h"

namespace vkr {
namespace {

constexpr int32_t kLowest = -2147483647 - 1, kHighest = 2147483647;

TEST(PiecewiseLinear, TruncatesTowardZeroOnBothSlopes)
{
    const int32_t vX[] = {0, 4, 8}, vY[] = {10, 17, -10};
    // 7 / 4 = 1.75, 14 / 4 = 3.5, 21 / 4 = 5.25; -27 / 4 = -6.75, -54 / 4 = -13.5, -81 / 4 = -20.25
    const int32_t vWant[] = {10, 11, 13, 15, 17, 11, 4, -3, -10};
    for (int v = 0; v <= 8; ++v) EXPECT_EQ(PiecewiseLinear(vX, vY, 3, v), vWant[v]) << v;
    EXPECT_EQ(PiecewiseLinear(vX, vY, 3, -1), 10);
    EXPECT_EQ(PiecewiseLinear(vX, vY, 3, kHighest), -10);
}

TEST(PiecewiseLinear, TheFirstSegmentThatHoldsTheValueCounts)
{
    const int32_t vX[] = {0, 8, 8, 16}, vY[] = {0, 100, 7, 15};
    EXPECT_EQ(PiecewiseLinear(vX, vY, 4, 8), 100);
    EXPECT_EQ(PiecewiseLinear(vX, vY, 4, 9), 8);
    const int32_t vStep[] = {5, 5, 9};
    EXPECT_EQ(PiecewiseLinear(vStep, vY, 3, 5), 100) << "a segment of width 0 is skipped";
}

TEST(PiecewiseLinear, WithoutASegmentTheLastValueStands)
{
    const int32_t vEqual[] = {5, 5}, vDescending[] = {9, 5, 1}, vY[] = {1, 2, 3};
    EXPECT_EQ(PiecewiseLinear(vEqual, vY, 2, 5), 2);
    EXPECT_EQ(PiecewiseLinear(vEqual, vY, 1, 40), 1);
    EXPECT_EQ(PiecewiseLinear(vDescending, vY, 3, 6), 3);
    EXPECT_EQ(PiecewiseLinear(nullptr, nullptr, 0, 6), 0);
    EXPECT_EQ(PiecewiseLinear(nullptr, nullptr, -1, 6), 0);
}

TEST(Clamp, OfCrossedBoundsTheLowerIsTestedFirst)
{
    EXPECT_EQ(7, Clamp(2, 7, 3));
    EXPECT_EQ(7, Clamp(6, 7, 3));
    EXPECT_EQ(3, Clamp(7, 7, 3));
    EXPECT_EQ(3, Clamp(9, 7, 3));
}

TEST(PiecewiseLinear, NodesMayLieAnywhere)
{
    const int32_t vX[] = {kLowest, kHighest}, vRising[] = {kLowest, kHighest}, vFalling[] = {kHighest, kLowest};
    for (const int32_t v : {kLowest, -1, 0, 12345, kHighest}) {
        EXPECT_EQ(PiecewiseLinear(vX, vRising, 2, v), v);
        EXPECT_EQ(PiecewiseLinear(vX, vFalling, 2, v), -1 - v);
    }
}

}  // namespace
}  // namespace vkr
