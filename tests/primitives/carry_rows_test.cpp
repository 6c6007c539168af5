#include "primitives/carry_rows.h"

#include <gtest/gtest.h>

#include <random>

#include "support/random_image.h"

namespace vkr {

namespace {

// No sample is lost: the samples and the last remainder give back the sum of the sums.
TEST(CarryRows, SignedRemaindersKeepTheTotal)
{
    std::mt19937 rng(23);
    for (const int nDim : {1, 2, 3, 6, 9}) {
        for (const int nShift : {2, 4, 8, 10}) {
            SCOPED_TRACE(testing::Message() << nDim << " channels, shift " << nShift);
            std::vector<int32_t> vCarry(nDim, 0);
            std::vector<int64_t> vTotal(nDim, 0);
            for (int nRow = 0; nRow < 5; ++nRow) {
                const int nCount = 37 * nDim;
                const auto vSums = RandomRow<int32_t>(rng, nCount, -(30000 << nShift), 30000 << nShift);
                std::vector<int16_t> vDst(nCount);
                CarryRow(vSums.data(), vDst.data(), nCount, nDim, nShift, vCarry.data());
                for (int i = 0; i < nCount; ++i) vTotal[i % nDim] += vSums[i] - vDst[i] * (int64_t{1} << nShift);
            }
            for (int c = 0; c < nDim; ++c) EXPECT_EQ(vTotal[c], vCarry[c]);
        }
    }
}

TEST(CarryRows, SignedRemainderHasTheSignOfTheSum)
{
    const std::vector<int32_t> vSums = {-5, -5, -5, 7, 1};  // in fours: -1 r -1, -6 -> -1 r -2, -7 -> -1 r -3, 4, 1
    std::vector<int16_t> vDst(5);
    int32_t nCarry = 0;
    CarryRow(vSums.data(), vDst.data(), 5, 1, 2, &nCarry);
    EXPECT_EQ((std::vector<int16_t>{-1, -1, -1, 1, 0}), vDst);
    EXPECT_EQ(1, nCarry);
}

TEST(CarryRows, DropRoundsOnlyByWhatIsAdded)
{
    const std::vector<uint16_t> vSums = {0, 127, 128, 255, 256, 65280, 384};
    std::vector<uint8_t> vDst(vSums.size());
    DropRow(vSums.data(), vDst.data(), 7, 8, 0);
    EXPECT_EQ((std::vector<uint8_t>{0, 0, 0, 0, 1, 255, 1}), vDst);
    DropRow(vSums.data(), vDst.data(), 7, 8, 128);
    EXPECT_EQ((std::vector<uint8_t>{0, 0, 1, 1, 1, 255, 2}), vDst);

    const std::vector<int32_t> vSigned = {-1025, -1024, -1023, -1, 0, 1023, 1024};
    std::vector<int16_t> vDst16(vSigned.size());
    DropRow(vSigned.data(), vDst16.data(), 7, 10, 0);
    EXPECT_EQ((std::vector<int16_t>{-1, -1, 0, 0, 0, 0, 1}), vDst16);
}

}  // namespace

}  // namespace vkr
