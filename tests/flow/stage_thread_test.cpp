#include "flow/stage_thread.h"

#include <gtest/gtest.h>

#include <new>

namespace vkr {
namespace {

TEST(StageThread, AnExceptionIsAFailure)
{
    EXPECT_TRUE(StageThread([] { return true; }).Join());
    EXPECT_FALSE(StageThread([] { return false; }).Join());
    EXPECT_FALSE(StageThread([]() -> bool { throw std::bad_alloc(); }).Join());
    EXPECT_FALSE(StageThread([]() -> bool { throw 3; }).Join());
}

}  // namespace
}  // namespace vkr
