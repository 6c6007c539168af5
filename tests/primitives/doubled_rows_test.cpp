#include "primitives/doubled_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "primitives/pyramid_levels.h"
#include "support/random_image.h"

namespace vkr {

namespace {

void ExpectRow(const TestImage& whole, DoubledRows::Reader& reader, int y)
{
    const uint8_t* pRow = reader.Row(y);
    ASSERT_TRUE(std::equal(pRow, pRow + whole.RowSamples(), whole.Row(y))) << "row " << y;
}

}  // namespace

TEST(DoubledRows, EqualDoubleImageInAnyOrder)
{
    std::mt19937 rng(6);
    const int vSizes[][3] = {{1, 1, 1}, {7, 1, 3}, {1, 2, 3}, {2, 2, 8}, {5, 9, 1}, {33, 12, 3}, {64, 5, 4}};
    for (const auto& size : vSizes) {
        TestImage src, whole;
        FillRandom(rng, src, size[0], size[1], size[2], 0, 255);
        for (int nForm = 0; nForm < 4; ++nForm) {
            SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << " x " << size[2] << ", form " << nForm);
            const bool bFilter = (nForm & 1) != 0, bDither = (nForm & 2) != 0;
            ASSERT_TRUE(DoubleImage(src, whole, bFilter, bDither));
            DoubledRows rows;
            ASSERT_TRUE(rows.Open(src, bFilter, bDither, 2));
            EXPECT_EQ(whole.nWidth, rows.Width());
            EXPECT_EQ(whole.nHeight, rows.Height());
            DoubledRows::Reader down, up;
            down.Open(rows, 0);
            up.Open(rows, 1);
            for (int y = 0; y < whole.nHeight; ++y) {  // two readers at once, in opposite directions
                ASSERT_NO_FATAL_FAILURE(ExpectRow(whole, down, y));
                ASSERT_NO_FATAL_FAILURE(ExpectRow(whole, up, whole.nHeight - 1 - y));
            }
        }
    }
}

TEST(DoubledRows, OpensAgainForAnotherPicture)
{
    std::mt19937 rng(7);
    DoubledRows rows;
    for (const int w : {40, 3, 90}) {
        TestImage src, whole;
        FillRandom(rng, src, w, w / 2, 3, 0, 255);
        const bool bFilter = w == 3;
        ASSERT_TRUE(rows.Open(src, bFilter, false, 1));
        ASSERT_TRUE(DoubleImage(src, whole, bFilter, false));
        DoubledRows::Reader reader;
        reader.Open(rows, 0);
        for (int y = 0; y < whole.nHeight; ++y) ASSERT_NO_FATAL_FAILURE(ExpectRow(whole, reader, y));
    }
    const TestImage empty;
    EXPECT_FALSE(rows.Open(empty, false, false, 1));
}

}  // namespace vkr
