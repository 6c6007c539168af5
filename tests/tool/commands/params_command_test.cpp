#include <gtest/gtest.h>

#include "flow/multi_exposure_flow.h"
#include "library/photo_preset.h"
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

// The shipped files are what the program prints. After a change of a default or of the photo preset:
//   vkrhdr params --shipped >params/default.txt; vkrhdr params --preset photo >params/photo.txt
TEST(ParamsCommand, IsWhereTheShippedFilesComeFrom)
{
    const TestFolder folder;
    const std::string sDefault = Printed(folder, {"params", "--shipped"});
    EXPECT_EQ(ReadText(VKRHDR_PARAMS_FOLDER "default.txt"), sDefault);
    EXPECT_EQ(sDefault, Printed(folder, {"params", "--preset", "default"}));
    EXPECT_NE(std::string::npos, sDefault.find("bLogoEnable=1"));
    const std::string sPhoto = Printed(folder, {"params", "--preset", "photo"});
    EXPECT_EQ(ReadText(VKRHDR_PARAMS_FOLDER "photo.txt"), sPhoto);
    for (const std::string& sText : {sDefault, sPhoto}) {
        EXPECT_EQ(std::string::npos, sText.find("bDumpDebug=1"));
        EXPECT_EQ(std::string::npos, sText.find("bDumpDebugFile=1"));
    }
}

// Every name and value of the preset is one that the library has, and comes out as it is.
TEST(ParamsCommand, PrintsThePhotoPresetOfASize)
{
    const TestFolder folder;
    EXPECT_EQ(ReadText(VKRHDR_PARAMS_FOLDER "photo.txt"), Printed(folder, {"params", "--for", "4000x3000"}));
    for (const Size size : {Size{640, 480}, Size{1920, 1080}, Size{6000, 4000}}) {
        const std::string sSize = std::to_string(size.nWidth) + "x" + std::to_string(size.nHeight);
        const std::string sText = Printed(folder, {"params", "--for", sSize});
        for (const std::string& sSet : PhotoAssignments(size)) {
            const std::string sLine = "\n" + sSet.substr(sSet.find('.') + 1) + ";";
            EXPECT_NE(std::string::npos, sText.find(sLine)) << sSize << sLine;
        }
    }
    EXPECT_NE(std::string::npos,
              Printed(folder, {"params", "--for", "64x48", "--set", "bLogoEnable=1"}).find("bLogoEnable=1;"));
}

TEST(ParamsCommand, PrintsTheRegisteredDefaultsOtherwise)
{
    const TestFolder folder;
    CMultiExposureHDRProcessFlowOpt flow;
    ASSERT_TRUE(flow.SaveParameterFile(folder.Path("own.txt").c_str()));
    EXPECT_EQ(ReadText(folder.Path("own.txt")), Printed(folder, {"params"}));
}

}  // namespace vkr::tool
