#include "foundation/timing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "foundation/log.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

// Milliseconds of the only line, which must consist of the text padded to 56, a space, six places and " ms".
int ShownTime(const std::string& sLine, std::string sText)
{
    if (sText.size() < 56) sText.resize(56, ' ');
    EXPECT_EQ(sLine.substr(0, sText.size() + 1), sText + " ");
    EXPECT_EQ(sLine.substr(sText.size() + 7), " ms\n");
    return std::atoi(sLine.c_str() + sText.size());
}

// Runs fn and returns what it printed.
template <class Fn>
std::string LinesOf(const Fn& fn)
{
    LinesScope lines;
    fn();
    return lines.Text();
}

void Sleep(int nMs)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(nMs));
}

TEST(Timing, BracketsNest)
{
    Tic();
    Sleep(60);
    Tic();
    const int nInner = ShownTime(LinesOf([] { Toc("inner"); }), "inner");
    const int nOuter = ShownTime(LinesOf([] { Toc("outer"); }), "outer");
    EXPECT_GE(nInner, 0);
    EXPECT_GE(nOuter, nInner + 55);
}

TEST(Timing, WithoutTicTheTimeIsZero)
{
    const std::string sLong(70, '=');
    EXPECT_EQ(LinesOf([&] { Toc(sLong.c_str()); }), sLong + "      0 ms\n");
    EXPECT_EQ(LinesOf([] { Toc(nullptr); }), std::string(56, ' ') + "      0 ms\n");
}

TEST(Timing, SwitchedOffTheStackStaysAsItWas)
{
    Tic();
    Sleep(30);
    g_bProfileEnable = 0;
    EXPECT_EQ(LinesOf([] {
                  Tic();
                  Toc("off");
                  Toc("off");
              }),
              "");
    g_bProfileEnable = 1;
    EXPECT_GE(ShownTime(LinesOf([] { Toc("on"); }), "on"), 25) << "the entry is still there";
    EXPECT_EQ(ShownTime(LinesOf([] { Toc("empty"); }), "empty"), 0);
}

TEST(Timing, AStageHasItsLineOnEveryWayOutAndAGoalWhereItIsReached)
{
    const auto Stage = [](const char* pText, bool bGoal) {
        return TimedStage(pText, [&] {
            GoalTimer goal("goal");
            if (bGoal) goal.Reached();
            return bGoal;
        });
    };
    Tic();
    Sleep(30);
    EXPECT_LT(ShownTime(LinesOf([&] { EXPECT_FALSE(Stage("stage", false)); }), "stage"), 25);
    const std::string sLines = LinesOf([&] { EXPECT_TRUE(Stage("stage", true)); });
    EXPECT_EQ(sLines.find("goal "), 0U);
    EXPECT_LT(ShownTime(sLines.substr(sLines.find('\n') + 1), "stage"), 25);
    EXPECT_EQ(LinesOf([] { EXPECT_THROW(TimedStage("stage", [] { throw 1; }), int); }), "");
    EXPECT_GE(ShownTime(LinesOf([] { Toc("outer"); }), "outer"), 25) << "whatever stood above it was closed";
}

TEST(Timing, DeepStacksGrowAndShrink)
{
    LinesScope lines;
    Tic();
    Sleep(30);
    for (int i = 0; i < 5000; ++i) Tic();
    for (int i = 0; i < 5000; ++i) Toc("x");
    lines.Text().clear();
    Toc("bottom");
    EXPECT_GE(ShownTime(lines.Text(), "bottom"), 25);
}

TEST(Timing, AnyThreadMayTicAndToc)
{
    LinesScope lines;
    std::vector<std::thread> vThreads;
    for (int i = 0; i < 4; ++i) {
        vThreads.emplace_back([] {
            for (int k = 0; k < 500; ++k) {
                Tic();
                Toc("t");
            }
        });
    }
    for (std::thread& thread : vThreads) thread.join();
    EXPECT_EQ(lines.Text().size(), 2000U * 67U);
    lines.Text().clear();
    Toc("empty");
    EXPECT_EQ(ShownTime(lines.Text(), "empty"), 0);
}

TEST(Timing, TheGatedLogGetsTheSameLine)
{
    testing::internal::CaptureStderr();
    g_bLogEnable = 1;
    const std::string sLine = LinesOf([] { Toc("stage"); });
    g_bLogEnable = 0;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "PaleLantern: " + sLine);
}

TEST(Timing, NowCountsMillisecondsOfA32BitProduct)
{
    const int64_t nBefore = NowMs();
    Sleep(20);
    const int64_t nPassed = NowMs() - nBefore;
    EXPECT_GE(nPassed, 19);
    EXPECT_LT(nPassed, 10000);
    EXPECT_LE(std::abs(nBefore), int64_t{2147483648} + 1000);
}

}  // namespace
}  // namespace vkr
