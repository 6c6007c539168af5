#include "tone/hsv_convert.h"

#include <gtest/gtest.h>

#include <array>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "tone/slow_hsv.h"

namespace vkr {
namespace {

// All colours of one first byte.
void ExpectPlainBytes(int nFirst, void (*pRow)(const uint8_t*, uint8_t*, int),
                      void (*pPlain)(const uint8_t*, uint8_t*, int))
{
    std::vector<uint8_t> vIn(3 * 65536), vOut(vIn.size()), vWant(vIn.size());
    for (size_t i = 0; i < 65536; ++i) {
        vIn[3 * i] = static_cast<uint8_t>(nFirst);
        vIn[3 * i + 1] = static_cast<uint8_t>(i >> 8);
        vIn[3 * i + 2] = static_cast<uint8_t>(i);
    }
    pRow(vIn.data(), vOut.data(), 65536);
    pPlain(vIn.data(), vWant.data(), 65536);
    ASSERT_TRUE(vOut == vWant) << nFirst;
}

TEST(HsvRows, GiveEveryColourBothWays)
{
    for (int n = 0; n < 256; ++n) {
        ASSERT_NO_FATAL_FAILURE(ExpectPlainBytes(n, BgrToHsvRow, BgrToHsvRowScalar));
        ASSERT_NO_FATAL_FAILURE(ExpectPlainBytes(n, HsvToBgrRow, HsvToBgrRowScalar));
    }
}

// Worked out by hand; a row of bytes follows the same formula, which its vector form writes anew.
TEST(WideHsv, FollowsTheFormulaAboveOneByteToo)
{
    const int vCases[][6] = {
        {0, 0, 0, 0, 0, 0},
        {70, 70, 70, 0, 0, 70},
        {10, 30, 110, 8, 231, 110},           // red: 43 * 20 / 100; 255 * 100 / 110 = 231.8
        {30, 10, 110, 248, 231, 110},         // -8
        {30, 110, 10, 93, 231, 110},          // green: 85 + 8
        {110, 30, 10, 163, 231, 110},         // blue: 171 - 8
        {100, 30000, 30000, 43, 254, 30000},  // red goes first
        {32000, 31900, 31950, 0, 0, 32000},   // a spread below one level of saturation is grey
    };
    for (const auto& [b, g, r, h, s, v] : vCases) {
        EXPECT_EQ(SlowBgrToHsv(b, g, r), (std::array<int, 3>{h, s, v})) << b << " " << g << " " << r;
    }
}

TEST(RGB2HSV, GivesTheSameBytesFromAnyTeam)
{
    LinesScope lines;
    std::mt19937 rng(93);
    TestImage rgb, hsv;
    FillRandom(rng, rgb, 37, 9, 3, 0, 255);
    std::vector<uint8_t> vWant(rgb.Samples());
    BgrToHsvRow(rgb.pData, vWant.data(), 37 * 9);
    ForThreads([&](int) {
        ASSERT_TRUE(RGB2HSV(rgb, hsv));
        EXPECT_EQ(Samples(hsv), vWant);
    });
    EXPECT_TRUE(lines.Contains("===========RGB2HSV"));
}

}  // namespace
}  // namespace vkr
