#include "tone/clip_saturation.h"

#include <gtest/gtest.h>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {
namespace {

// One row of grey pixels under a mask; the high frequencies are 1000 everywhere.
struct MaskedRow {
    MaskedRow(const std::vector<int>& vGrey, const std::vector<int>& vMask)
    {
        FillConstant(fused, static_cast<int>(vGrey.size()), 1, 6, 1000);
        FillConstant(mask, static_cast<int>(vGrey.size()), 1, 1, 0);
        for (size_t i = 0; i < vGrey.size(); ++i) {
            for (int c = 0; c < 3; ++c) fused.pData[6 * i + c] = static_cast<int16_t>(vGrey[i]);
            mask.pData[i] = static_cast<uint8_t>(vMask[i]);
        }
    }
    std::string Clip(int32_t nShare)
    {
        LinesScope lines;
        EXPECT_TRUE(ClipSaturation(fused, mask, nShare));
        return LinesScope::Text();
    }
    int Grey(int x) const { return fused.pData[6 * x]; }

    TestShortImage fused;
    TestImage mask;
};

TEST(ClipSaturation, LeavesAPictureWithoutSaturationAlone)
{
    MaskedRow row({100, 300, 280}, {0, 0, 0});
    EXPECT_EQ(row.Clip(16), "MAX=[300,300,300]MAXS=300\n");
    EXPECT_EQ(row.Grey(1), 300);
    MaskedRow dark({-5, 20}, {0, 0});
    EXPECT_EQ(dark.Clip(16), "MAX=[20,20,20]MAXS=255\n");
}

TEST(ClipSaturation, JudgesAnAreaOfMoreThanOneIn256)
{
    std::vector<int> vGrey(768, 200), vMask(768, 0);
    vGrey[0] = 300;
    vMask[1] = 2;
    vMask[2] = 1;
    EXPECT_EQ(MaskedRow(vGrey, vMask).Clip(16), "MAX=[300,300,300]MAXS=300\n");  // 3 of 768
    vGrey.pop_back();
    vMask.pop_back();
    MaskedRow row(vGrey, vMask);
    EXPECT_NE(row.Clip(128).find("MAXS=200\n"), std::string::npos);  // 3 of 767
    EXPECT_EQ(row.Grey(0), 200);
    EXPECT_EQ(row.fused.pData[3], 1000);  // the high frequencies stay
}

TEST(ClipSaturation, TakesTheLeastOfMeanPeakAndPercentile)
{
    // Degrees 4 at 250, 3 at 260, 1 at 290: mean 2070 / 8 = 258, peak 250, all of 8 reached at 290.
    MaskedRow mean({250, 260, 290}, {4, 3, 1});
    EXPECT_EQ(mean.Clip(128),
              "MAX=[290,290,290]SaturatedY=258 PeakSaturatedY=250 PtSaturatedY=290@Ps100.000000%MAXS=250\n");
    EXPECT_EQ(mean.Grey(1), 250);
    // Share 16 of 128: one degree of 8, reached at the first bin; the peak lies at the top.
    MaskedRow percentile({240, 260, 290}, {1, 1, 6});
    EXPECT_EQ(percentile.Clip(16),
              "MAX=[290,290,290]SaturatedY=280 PeakSaturatedY=290 PtSaturatedY=240@Ps12.500000%MAXS=240\n");
}

TEST(ClipSaturation, SettlesTiesOfThePeak)
{
    // Mean (250 + 260 + 270) / 3 = 260, whose bin none exceeds: the mean keeps the peak.
    EXPECT_NE(MaskedRow({250, 260, 270}, {1, 1, 1}).Clip(128).find("PeakSaturatedY=260 "), std::string::npos);
    // The mean's own bin 255 is empty: the first of two equal bins wins.
    EXPECT_NE(MaskedRow({250, 260}, {2, 2}).Clip(128).find("SaturatedY=255 PeakSaturatedY=250 "), std::string::npos);
    // Bin 0 wins if it is strictly larger than the mean's.
    EXPECT_NE(MaskedRow({0, 90}, {2, 2}).Clip(128).find("SaturatedY=45 PeakSaturatedY=0 "), std::string::npos);
}

TEST(ClipSaturation, CountsNegativeBrightnessInBinZero)
{
    MaskedRow row({-40, -60, 10}, {1, 1, 0});
    EXPECT_EQ(row.Clip(64), "MAX=[10,10,10]SaturatedY=-50 PeakSaturatedY=-50 PtSaturatedY=0@Ps50.000000%MAXS=-50\n");
    EXPECT_EQ(row.Grey(0), -50);
    EXPECT_EQ(row.Grey(1), -60);
    EXPECT_EQ(row.Grey(2), -50);
}

TEST(ClipSaturation, RefusesAMaskOfAnotherSize)
{
    MaskedRow row({250, 300}, {1, 1});
    TestImage mask;
    EXPECT_FALSE(ClipSaturation(row.fused, mask, 16));
    FillConstant(mask, 2, 2, 1, 1);
    EXPECT_FALSE(ClipSaturation(row.fused, mask, 16));
    EXPECT_EQ(row.Grey(1), 300);
}

TEST(ClipSaturation, IsTheSameFromAnyTeamAtEveryWidth)
{
    LinesScope lines;
    std::mt19937 rng(72);
    for (const int w : {1, 2, 7, 8, 9, 33}) {
        TestShortImage source, one, many;
        TestImage mask;
        FillRandom(rng, source, w, 11, 6, -20, 400);
        FillRandom(rng, mask, w, 11, 1, 0, 16);
        ASSERT_TRUE(one.CopyDimFrom(source));
        {
            ThreadsScope scope(1);
            LinesScope::Text().clear();
            ASSERT_TRUE(ClipSaturation(one, mask, 30));
        }
        const std::string sLines = LinesScope::Text();
        const int nCeiling = std::stoi(sLines.substr(sLines.find("MAXS=") + 5));
        for (size_t i = 0; i < source.Samples(); ++i) {
            const int16_t nWant = i % 6 < 3 ? std::min<int16_t>(source.pData[i], nCeiling) : source.pData[i];
            ASSERT_EQ(one.pData[i], nWant) << w << " " << i;
        }
        ForThreads([&](int) {
            ASSERT_TRUE(many.CopyDimFrom(source));
            LinesScope::Text().clear();
            ASSERT_TRUE(ClipSaturation(many, mask, 30));
            EXPECT_EQ(Samples(many), Samples(one));
            EXPECT_EQ(LinesScope::Text(), sLines);
        });
    }
}

}  // namespace
}  // namespace vkr
