#include <gtest/gtest.h>

#include "run_tool.h"

namespace vkr::tool {

namespace {

using Names = std::vector<std::string>;

}  // namespace

TEST(DemoCommand, LeavesItsPicturesAndRepeatsThemToTheByte)
{
    const TestFolder folder;
    for (const char* pFolder : {"one", "two/deep"}) {
        const ToolRun run = RunTool(folder, {"demo", "-o", pFolder, "--size", "192x128"});
        EXPECT_EQ(0, run.nStatus) << run.sErr;
        EXPECT_EQ("", run.sOut);
        EXPECT_EQ(1, run.ErrorLines()) << run.sErr;
    }
    for (const char* pName : {"frame0.jpg", "frame1.jpg", "frame2.jpg", "result.jpg", "side_by_side.png"}) {
        EXPECT_EQ(ReadText(folder.Path(std::string("one/") + pName)),
                  ReadText(folder.Path(std::string("two/deep/") + pName)))
            << pName;
    }
    const Raster sheet = ReadPng(ReadWholeFile(folder.Path("one/side_by_side.png")), "");
    EXPECT_EQ(128, sheet.nHeight);
    EXPECT_GT(sheet.nWidth, 192 + 64);
    EXPECT_EQ((Names{"one/", "two/"}), folder.Names());
}

TEST(DemoCommand, TakesAnyNumberOfExposures)
{
    const TestFolder folder;
    for (const char* pCount : {"1", "2", "8"}) {
        const ToolRun run = RunTool(folder, {"demo", "-o", "demo", "--size", "128x96", "--exposures", pCount});
        EXPECT_EQ(0, run.nStatus) << pCount << run.sErr;
    }
    EXPECT_TRUE(std::filesystem::exists(folder.Path("demo/frame7.jpg")));
}

TEST(BenchCommand, PrintsOneTableOnStandardOutput)
{
    const TestFolder folder;
    const ToolRun run = RunTool(folder, {"bench", "--size", "128x96", "--runs", "2", "--threads", "1"});
    EXPECT_EQ(0, run.nStatus) << run.sErr;
    EXPECT_EQ("", run.sErr);
    for (const char* pWords : {"128x96, 3 exposures, 1 threads, medians of 2 runs, preset photo", "PyramidFusion Done",
                               "rendering", "peak memory, MiB"}) {
        EXPECT_NE(std::string::npos, run.sOut.find(pWords)) << pWords << run.sOut;
    }
    EXPECT_TRUE(folder.Names().empty());
}

}  // namespace vkr::tool
