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

TEST(WideHsv, GoesOnAboveOneByte)
{
    std::mt19937 rng(92);
    const auto v = RandomRow<int16_t>(rng, 3 * 20000, 0, 32767);
    for (size_t i = 0; i < v.size(); i += 3) {
        const int nShift = static_cast<int>(i / 3 % 15);
        const int b = v[i] >> nShift, g = v[i + 1] >> nShift, r = v[i + 2] >> nShift;
        const WideHsv wide = WideToHsv(b, g, r);
        EXPECT_EQ((std::array<int, 3>{wide.nHue, wide.nSaturation, wide.nValue}), SlowBgrToHsv(b, g, r));
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
