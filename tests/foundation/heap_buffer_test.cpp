#include "foundation/heap_buffer.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace vkr {
namespace {

TEST(HeapBuffer, IsAlignedAndClearedOnDemand)
{
    HeapBuffer<int32_t> buffer;
    for (const size_t nCount : {0U, 1U, 15U, 16U, 17U, 1000U}) {
        ASSERT_TRUE(buffer.AllocateZero(nCount));
        EXPECT_EQ(buffer.Count(), nCount);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(buffer.Data()) % 64, 0U);
        for (size_t i = 0; i < nCount; ++i) {
            EXPECT_EQ(buffer[i], 0);
            buffer[i] = -1;
        }
    }
}

TEST(HeapBuffer, SizesThatOverflowAreRefused)
{
    constexpr size_t kMost = static_cast<size_t>(-1);
    HeapBuffer<int32_t> buffer;
    for (const size_t nCount : {kMost, kMost / 4, kMost / 4 - 15, kMost / 4 + 2, kMost / 2 + 1}) {
        ASSERT_TRUE(buffer.Allocate(3));
        EXPECT_FALSE(buffer.Allocate(nCount)) << nCount;
        EXPECT_EQ(buffer.Data(), nullptr);
        EXPECT_EQ(buffer.Count(), 0U);
    }
}

}  // namespace
}  // namespace vkr
