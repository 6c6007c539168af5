#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

#include "face/average_pooling_down_scale_filter.h"
#include "face/rotate_image.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

TEST(RotateUpright, EveryPixelComesFromItsPlace)
{
    std::mt19937 rng(6);
    for (const auto& size : std::vector<std::pair<int, int>>{{1, 1}, {5, 1}, {1, 7}, {34, 19}, {17, 40}}) {
        const int W = size.first, H = size.second;
        TestImage src;
        FillRandom(rng, src, W, H, 3, 0, 255);
        ForThreads([&](int nThreads) {
            for (const int nOrientation : {1, 2, 3}) {
                SCOPED_TRACE(testing::Message() << W << " x " << H << ", " << nOrientation << ", " << nThreads);
                TestImage dst;
                ASSERT_TRUE(RotateUpright(src, nOrientation, dst));
                ASSERT_EQ(nOrientation == 2 ? W : H, dst.nWidth);
                ASSERT_EQ(nOrientation == 2 ? H : W, dst.nHeight);
                const auto Source = [&](int x, int y) {
                    if (nOrientation == 1) return src.Row(H - 1 - x) + 3 * y;
                    return nOrientation == 2 ? src.Row(H - 1 - y) + 3 * (W - 1 - x) : src.Row(x) + 3 * (W - 1 - y);
                };
                for (int i = 0; i < dst.nWidth * dst.nHeight * 3; ++i) {
                    const int x = i / 3 % dst.nWidth, y = i / 3 / dst.nWidth;
                    ASSERT_EQ(Source(x, y)[i % 3], dst.pData[i]) << x << ", " << y;
                }
            }
        });
    }
    TestImage src, dst;
    FillConstant(src, 4, 4, 3, 1);
    EXPECT_FALSE(RotateUpright(src, 4, dst));
    EXPECT_FALSE(RotateUpright(src, 0, dst));
}

// Of the 18 columns 16 are averaged, the last two by the weights 1, 1, 0, 2 in component 0.
TEST(ApplyDownScale, HalvesWithTheTailsOwnWeights)
{
    std::mt19937 rng(7);
    for (const int w : {2, 14, 16, 18, 32, 46}) {
        TestImage src;
        FillRandom(rng, src, w, 6, 3, 0, 255);
        ForThreads([&](int) {
            TestImage dst;
            ASSERT_TRUE(CAveragePoolingDownScaleFilter::ApplyDownScale(src, dst, 2));
            ASSERT_EQ(w / 2, dst.nWidth);
            ASSERT_EQ(3, dst.nHeight);
            for (int i = 0; i < w / 2 * 9; ++i) {
                const int x = i / 3 % (w / 2), y = i / 3 / (w / 2), c = i % 3;
                const uint8_t *pTop = src.Row(2 * y) + 6 * x + c, *pBottom = src.Row(2 * y + 1) + 6 * x + c;
                const bool bTail = 2 * x >= w / 16 * 16 && c == 0;
                const int nLower = bTail ? 2 * pBottom[3] : pBottom[0] + pBottom[3];
                ASSERT_EQ((pTop[0] + pTop[3] + nLower) / 4, dst.pData[i]) << w << ": " << x << ", " << y << ", " << c;
            }
        });
    }
}

TEST(ApplyDownScale, OtherSizesAddShares)
{
    TestImage src, dst;
    FillConstant(src, 5, 3, 3, 255);
    ASSERT_TRUE(CAveragePoolingDownScaleFilter::ApplyDownScale(src, dst, 2));  // an odd side
    EXPECT_EQ(3, dst.nWidth);
    EXPECT_EQ(2, dst.nHeight);
    EXPECT_EQ(4 * 63, dst.Row(0)[0]);
    EXPECT_EQ(2 * 63, dst.Row(0)[8]);
    EXPECT_EQ(63, dst.Row(1)[8]);
    ASSERT_TRUE(CAveragePoolingDownScaleFilter::ApplyDownScale(src, dst, 3));
    EXPECT_EQ((9 * 28), dst.Row(0)[2]);
    EXPECT_EQ((6 * 28), dst.Row(0)[3]);
    ASSERT_TRUE(CAveragePoolingDownScaleFilter::ApplyDownScale(src, dst, INT32_MAX));
    EXPECT_EQ(0, dst.Row(0)[0]);
    EXPECT_FALSE(CAveragePoolingDownScaleFilter::ApplyDownScale(src, dst, 0));
}

}  // namespace
}  // namespace vkr
