#include "tone/hsv_convert.h"

#include <gtest/gtest.h>

#include <array>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "support/simd_targets.h"
#include "tone/slow_hsv.h"

namespace vkr {
namespace {

using Pixel = std::array<uint8_t, 3>;

// The row form over all colours of one first byte against the slow one.
template <class Row, class Slow>
void CompareAll(int nFirst, const Row& row, const Slow& slow)
{
    std::vector<Pixel> vIn(65536), vOut(65536);
    for (size_t i = 0; i < vIn.size(); ++i) {
        vIn[i] = {static_cast<uint8_t>(nFirst), static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)};
    }
    row(vIn[0].data(), vOut[0].data(), static_cast<int>(vIn.size()));
    for (size_t i = 0; i < vIn.size(); ++i) {
        if (vOut[i] == slow(vIn[i])) continue;
        FAIL() << int{vIn[i][0]} << " " << int{vIn[i][1]} << " " << int{vIn[i][2]};
    }
}

Pixel SlowHsv(const Pixel& bgr)
{
    const std::array<int, 3> hsv = SlowBgrToHsv(bgr[0], bgr[1], bgr[2]);
    return {static_cast<uint8_t>(hsv[0]), static_cast<uint8_t>(hsv[1]), static_cast<uint8_t>(hsv[2])};
}

TEST(HsvRows, GiveEveryColourBothWays)
{
    for (int n = 0; n < 256; ++n) {
        ASSERT_NO_FATAL_FAILURE(CompareAll(n, BgrToHsvRow, SlowHsv));
        ASSERT_NO_FATAL_FAILURE(
            CompareAll(n, HsvToBgrRow, [](const Pixel& p) { return SlowHsvToBgr(p[0], p[1], p[2]); }));
    }
}

class HsvRowsTest : public SimdTargetTest {};

TEST_P(HsvRowsTest, KeepTheirRowAndServeEveryWidthInPlace)
{
    std::mt19937 rng(91);
    for (const int nWidth : {0, 1, 2, 15, 33, 255, 256, 257, 600}) {
        const auto vIn = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(nWidth), 0, 255);
        std::vector<uint8_t> vHsv, vBgr;
        for (size_t i = 0; i < vIn.size(); i += 3) {
            for (const uint8_t n : SlowHsv({vIn[i], vIn[i + 1], vIn[i + 2]})) vHsv.push_back(n);
            for (const uint8_t n : SlowHsvToBgr(vHsv[i], vHsv[i + 1], vHsv[i + 2])) vBgr.push_back(n);
        }
        Guarded<uint8_t> row(vIn.size());
        std::copy(vIn.begin(), vIn.end(), row.Data());
        BgrToHsvRow(row.Data(), row.Data(), nWidth);
        EXPECT_EQ(row.Values(), vHsv);
        HsvToBgrRow(row.Data(), row.Data(), nWidth);
        EXPECT_EQ(row.Values(), vBgr);
        EXPECT_TRUE(row.Intact());
    }
}
INSTANTIATE_ON_ALL_TARGETS(HsvRowsTest);

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
