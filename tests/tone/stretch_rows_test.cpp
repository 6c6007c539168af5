#include "tone/stretch_rows.h"

#include <gtest/gtest.h>

#include <vector>

namespace vkr {
namespace {

GammaLut Identity()
{
    GammaLut lut;
    for (int32_t i = 0; i < 256; ++i) lut.vValue[i] = i;
    return lut;
}

TEST(StretchCarryRow, CarriesTheSignedRemainder)
{
    // Base and high products of one component, the others 0.
    const int32_t vProducts[5][2] = {{300, 0}, {300, 0}, {-500, -100}, {100, 0}, {90000, -300}};
    std::vector<int32_t> vRow(5 * 6, 0);
    for (size_t x = 0; x < 5; ++x) {
        vRow[6 * x + 1] = vProducts[x][0];
        vRow[6 * x + 4] = vProducts[x][1];
    }
    uint8_t vOut[15];
    StretchCarry carry{};
    StretchCarryRow(vRow.data(), vOut, 5, Identity(), carry);
    EXPECT_EQ(vOut[1], 1);     // 300, rest 44
    EXPECT_EQ(vOut[4], 1);     // 344, rest 88
    EXPECT_EQ(vOut[7], 0);     // clipped to 0, minus 100: rest -100
    EXPECT_EQ(vOut[10], 0);    // 0, rest 0
    EXPECT_EQ(vOut[13], 253);  // 65280 - 300 = 64980 = 253 * 256 + 212
    EXPECT_EQ(carry.vRest[1], 212);
    EXPECT_EQ(carry.vRest[0], 0);

    const int32_t vNegative[6] = {0, 0, 0, -700, 0, 0};
    StretchCarryRow(vNegative, vOut, 1, Identity(), carry);
    EXPECT_EQ(vOut[0], 0);
    EXPECT_EQ(carry.vRest[0], -188);  // -700 = -2 * 256 - 188, toward zero
}

}  // namespace
}  // namespace vkr
