#include "align/frame_padding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

TEST(PadFrame, RepeatsTheLastSamplesPairsAndRowsAndCropTakesThemOff)
{
    std::mt19937 rng(51);
    const int vSizes[][4] = {{2, 2, 2, 2}, {2, 2, 6, 4}, {18, 10, 18, 12}, {30, 14, 44, 14}, {20, 6, 28, 16}};
    for (const auto& vSize : vSizes) {
        const int w = vSize[0], h = vSize[1], wPadded = vSize[2], hPadded = vSize[3];
        ForThreads([&](int) {
            TestYuvImage frame, padded;
            ASSERT_TRUE(frame.Allocate(w, h));
            for (int i = 0; i < w * h / 2 * 3; ++i) frame.pBuffer[i] = static_cast<uint8_t>(rng());
            ASSERT_TRUE(padded.CopyFrom(frame) && PadFrame(padded, wPadded, hPadded));
            ASSERT_TRUE(padded.nWidth == wPadded && padded.nHeight == hPadded);
            for (int y = 0; y < hPadded; ++y) {
                for (int x = 0; x < wPadded; ++x) {
                    ASSERT_EQ(frame.pY[std::min(y, h - 1) * w + std::min(x, w - 1)], padded.RowY(y)[x]);
                    const int nPair = std::min(x / 2, w / 2 - 1);
                    ASSERT_EQ(frame.pUV[std::min(y / 2, h / 2 - 1) * w + 2 * nPair + x % 2], padded.RowUV(y / 2)[x]);
                }
            }
            ASSERT_TRUE(CropFrame(padded, w, h));
            EXPECT_EQ(Samples(frame), Samples(padded));
        });
    }
}

TEST(PadFrame, RefusesTheWrongDirectionAndLeavesTheFrame)
{
    TestYuvImage frame;
    ASSERT_TRUE(frame.Allocate(16, 8));
    EXPECT_FALSE(PadFrame(frame, 14, 8) || PadFrame(frame, 16, 6) || PadFrame(frame, 17, 8));
    EXPECT_FALSE(CropFrame(frame, 18, 8) || CropFrame(frame, 16, 10) || CropFrame(frame, 0, 8));
    EXPECT_TRUE(frame.nWidth == 16 && frame.nHeight == 8 && frame.pBuffer != nullptr);
}

}  // namespace
}  // namespace vkr
