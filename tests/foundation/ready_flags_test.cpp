#include "foundation/ready_flags.h"

#include <gtest/gtest.h>

namespace vkr {

TEST(ReadyFlags, GivesEachExposureOnceLowestFirst)
{
    ReadyFlags flags;
    flags.Reset();
    EXPECT_EQ(-1, flags.TakeReady(8));
    flags.SetReady(5);
    flags.SetReady(2);
    EXPECT_EQ(-1, flags.TakeReady(2));  // both are beyond the count
    EXPECT_EQ(2, flags.TakeReady(8));
    EXPECT_EQ(5, flags.TakeReady(8));
    EXPECT_EQ(-1, flags.TakeReady(8));
}

TEST(ReadyFlags, ResetForgetsWhatWasReadyOrTaken)
{
    ReadyFlags flags;
    flags.SetReady(0);
    flags.SetReady(1);
    EXPECT_EQ(0, flags.TakeReady(8));
    flags.Reset();
    EXPECT_EQ(-1, flags.TakeReady(8));
    flags.SetReady(0);
    EXPECT_EQ(0, flags.TakeReady(8));
}

TEST(ReadyFlags, IgnoresIndicesThatNoBurstHas)
{
    ReadyFlags flags;
    flags.SetReady(-1);
    flags.SetReady(kMaxExposures);
    EXPECT_EQ(-1, flags.TakeReady(kMaxExposures + 5));
}

}  // namespace vkr
