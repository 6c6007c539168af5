#include "foundation/log.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/quiet_lines.h"

namespace vkr {
namespace {

TEST(Log, PrintsToStandardOutputAsItStands)
{
    testing::internal::CaptureStdout();
    HdrPrintf("%s %d%%", "half", 50);
    HdrPrintf("\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "half 50%\n");
}

TEST(Log, LinesOfAnyLengthReachTheSinkWhole)
{
    LinesScope lines;
    for (const size_t nLength : {0U, 1U, 510U, 511U, 512U, 513U, 70000U}) {
        const std::string sLine(nLength, 'x');
        lines.Text().clear();
        HdrPrintf("%s|", sLine.c_str());
        EXPECT_EQ(lines.Text(), sLine + "|");
    }
}

TEST(Log, LinesOfSeveralThreadsDoNotMix)
{
    LinesScope lines;
    std::vector<std::thread> vThreads;
    for (int i = 0; i < 4; ++i) {
        vThreads.emplace_back([i] {
            for (int k = 0; k < 200; ++k) HdrPrintf("%s\n", std::string(600, static_cast<char>('a' + i)).c_str());
        });
    }
    for (std::thread& thread : vThreads) thread.join();
    const std::string sText = lines.Text();
    ASSERT_EQ(sText.size(), 4U * 200U * 601U);
    for (size_t i = 0; i < sText.size(); i += 601) {
        ASSERT_EQ(sText.substr(i, 601), std::string(600, sText[i]) + "\n");
    }
}

TEST(Log, SprintfCutsAtTheEndOfTheBuffer)
{
    char szBuffer[8] = "-------";
    HdrSprintf(szBuffer, 6, "%d", 1234567);
    EXPECT_EQ(std::string(szBuffer, 8), std::string("12345\0-\0", 8));
    HdrSprintf(szBuffer, 0, "x");
    HdrSprintf(nullptr, 8, "x");
    EXPECT_EQ(szBuffer[0], '1');
}

TEST(Log, ThePlatformLogStandsBehindItsGate)
{
    testing::internal::CaptureStderr();
    HdrLog("closed");
    g_bLogEnable = 1;
    HdrLog("open %d", 1);
    HdrLog("%s", "ended\n");
    g_bLogEnable = 0;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "PaleLantern: open 1\nPaleLantern: ended\n");
}

}  // namespace
}  // namespace vkr
