#include "tone/stretch_rows.h"

#include <gtest/gtest.h>

#include "support/random_image.h"
#include "support/simd_targets.h"

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

class StretchRowsTest : public SimdTargetTest {};

TEST_P(StretchRowsTest, CarryEqualsScalarAtEveryWidth)
{
    std::mt19937 rng(73);
    GammaLut lut;
    for (int32_t i = 0; i < 256; ++i) lut.vValue[i] = 255 - i;
    StretchCarry want{{-255, 17, 255}}, got = want;
    for (int nWidth = 0; nWidth <= 40; ++nWidth) {
        const auto vProducts = RandomRow<int32_t>(rng, static_cast<size_t>(6 * nWidth), -30000, 70000);
        Guarded<uint8_t> wantRow(static_cast<size_t>(3 * nWidth)), gotRow(static_cast<size_t>(3 * nWidth));
        StretchCarryRowScalar(vProducts.data(), wantRow.Data(), nWidth, lut, want);
        StretchCarryRow(vProducts.data(), gotRow.Data(), nWidth, lut, got);
        EXPECT_EQ(gotRow.Values(), wantRow.Values());
        EXPECT_TRUE(gotRow.Intact());
        for (int c = 0; c < 3; ++c) EXPECT_EQ(got.vRest[c], want.vRest[c]);
    }
}

// Every gain that levels can give, with samples of the whole range: the products are exact up to +-65536 and stay
// beyond that end where they are not.
TEST_P(StretchRowsTest, ProductsAreExactWhereTheyCount)
{
    std::mt19937 rng(74);
    for (const int32_t nScale : {0, 1, -1, 85, 256, 290, 340, 21760, 65280, -65280, -290}) {
        for (const int32_t nLow : {-255, 0, 32, 255}) {
            const StretchGain gain = {nLow, nScale, std::max(nScale, 256)};
            const int nWidth = 21;
            auto vFused = RandomRow<int16_t>(rng, 6 * nWidth, -32768, 32767);
            for (size_t i = 0; i < vFused.size(); i += 2) vFused[i] = static_cast<int16_t>(vFused[i] % 300);
            vFused[0] = vFused[5] = -32768;
            vFused[1] = vFused[4] = 32767;
            Guarded<int32_t> products(vFused.size());
            StretchProducts(vFused.data(), products.Data(), nWidth, gain);
            EXPECT_TRUE(products.Intact());
            for (size_t i = 0; i < vFused.size(); ++i) {
                const int64_t nWant =
                    i % 6 < 3 ? int64_t{nScale} * (vFused[i] - nLow) : int64_t{gain.nHighGain} * vFused[i];
                const int64_t nGot = products.Data()[i];
                if (i % 6 >= 3 || std::abs(nWant) <= 65536) {
                    ASSERT_EQ(nGot, nWant) << nScale << " " << i;
                } else {
                    ASSERT_TRUE(nWant > 0 ? nGot > 65536 : nGot < -65536) << nScale << " " << i;
                }
            }
        }
    }
}

INSTANTIATE_ON_ALL_TARGETS(StretchRowsTest);

}  // namespace
}  // namespace vkr
