#include <gtest/gtest.h>

#include "flow/multi_exposure_flow.h"
#include "run_tool.h"
#include "support/quiet_lines.h"

namespace vkr::tool {

namespace {

Bytes BytesOf(const std::string& sText)
{
    return Bytes(sText.begin(), sText.end());
}

std::string Printed(const TestFolder& folder, const std::vector<std::string>& vArguments)
{
    const ToolRun run = RunTool(folder, vArguments);
    EXPECT_EQ(0, run.nStatus);
    EXPECT_EQ("", run.sErr);
    return run.sOut;
}

}  // namespace

TEST(ParamsCommand, PrintsWhatLoadsAndComesOutTheSame)
{
    const TestFolder folder;
    const LinesScope lines;
    const std::string sText =
        Printed(folder, {"params", "--set", "nMaxGamma=120", "--set", "CGhostProcessFilter.nMinGhostLevel=3"});
    EXPECT_NE(std::string::npos, sText.find("nMaxGamma=120;"));
    EXPECT_NE(std::string::npos, sText.find("nMinGhostLevel=3;"));
    WriteWholeFile(folder.Path("params.txt"), BytesOf(sText));
    CMultiExposureHDRProcessFlowOpt flow;
    ASSERT_TRUE(flow.LoadParameterFile(folder.Path("params.txt").c_str()));
    ASSERT_TRUE(flow.SaveParameterFile(folder.Path("again.txt").c_str()));
    EXPECT_EQ(sText, ReadText(folder.Path("again.txt")));
    EXPECT_EQ("", lines.Text());
}

// The shipped file is what the program prints; after a change of a default: vkrhdr params --shipped >params/default.txt
TEST(ParamsCommand, IsWhereTheShippedFileComesFrom)
{
    const TestFolder folder;
    const std::string sText = Printed(folder, {"params", "--shipped"});
    EXPECT_EQ(ReadText(VKRHDR_DEFAULT_PARAMS), sText);
    EXPECT_EQ(std::string::npos, sText.find("bDumpDebug=1"));
    EXPECT_EQ(std::string::npos, sText.find("bDumpDebugFile=1"));
    EXPECT_NE(std::string::npos, sText.find("bLogoEnable=1"));
}

TEST(ParamsCommand, PrintsTheRegisteredDefaultsOtherwise)
{
    const TestFolder folder;
    CMultiExposureHDRProcessFlowOpt flow;
    ASSERT_TRUE(flow.SaveParameterFile(folder.Path("own.txt").c_str()));
    EXPECT_EQ(ReadText(folder.Path("own.txt")), Printed(folder, {"params"}));
}

}  // namespace vkr::tool
