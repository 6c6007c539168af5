#include "primitives/planar_rows.h"

#include <gtest/gtest.h>

#include <random>

#include "support/random_image.h"
#include "support/simd_targets.h"

namespace vkr {

class PlanarRowsTest : public SimdTargetTest {};

TEST_P(PlanarRowsTest, SplitPutsEachChannelIntoItsPlane)
{
    std::mt19937 rng(1);
    for (int nDim = 1; nDim <= 8; ++nDim) {
        for (int nCount = 0; nCount <= kRunPixels; nCount += nCount < 70 ? 1 : 31) {
            SCOPED_TRACE(testing::Message() << nDim << " channels, " << nCount << " pixels");
            const auto vRow = RandomRow<uint8_t>(rng, static_cast<size_t>(nCount) * nDim, 0, 255);
            std::vector<Guarded<uint8_t>> vPlanes(nDim, Guarded<uint8_t>(nCount));
            uint8_t* vPointers[8];
            for (int c = 0; c < nDim; ++c) vPointers[c] = vPlanes[c].Data();
            SplitPixelRow(vRow.data(), vPointers, nCount, nDim);
            for (int c = 0; c < nDim; ++c) {
                EXPECT_TRUE(vPlanes[c].Intact());
                for (int x = 0; x < nCount; ++x) ASSERT_EQ(vRow[x * nDim + c], vPointers[c][x]);
            }
        }
    }
}

template <class T>
void ExpectJoined(int nCount)
{
    SCOPED_TRACE(nCount);
    std::mt19937 rng(nCount);
    const int nLowest = sizeof(T) == 1 ? 0 : -32768, nHighest = sizeof(T) == 1 ? 255 : 32767;
    const auto v0 = RandomRow<T>(rng, nCount, nLowest, nHighest), v1 = RandomRow<T>(rng, nCount, nLowest, nHighest),
               v2 = RandomRow<T>(rng, nCount, nLowest, nHighest);
    const T* const vPlanes[3] = {v0.data(), v1.data(), v2.data()};
    Guarded<T> row(3 * static_cast<size_t>(nCount));
    JoinPixelRow(vPlanes, row.Data(), nCount);
    EXPECT_TRUE(row.Intact());
    for (int i = 0; i < 3 * nCount; ++i) ASSERT_EQ(vPlanes[i % 3][i / 3], row.Data()[i]);
}

TEST_P(PlanarRowsTest, JoinPutsThreePlanesSideBySide)
{
    for (int nCount = 0; nCount <= kRunPixels; nCount += nCount < 70 ? 1 : 31) {
        ExpectJoined<uint8_t>(nCount);
        ExpectJoined<int16_t>(nCount);
    }
}

INSTANTIATE_ON_ALL_TARGETS(PlanarRowsTest);

}  // namespace vkr
