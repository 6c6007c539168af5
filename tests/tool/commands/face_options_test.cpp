#include <gtest/gtest.h>

#include "run_tool.h"

namespace vkr::tool {

namespace {

// A small drawn burst in the folder, and the run that fuses it there.
class FaceOptionsTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(0, RunTool(m_folder, {"demo", "--size", "320x240", "-o", m_folder.Path("demo")}).nStatus);
    }
    ToolRun Fuse(std::vector<std::string> vMore)
    {
        std::vector<std::string> vArguments = {"fuse", "-o", m_folder.Path("out.png")};
        for (int k = 0; k < 3; ++k) vArguments.push_back(m_folder.Path("demo/frame" + std::to_string(k) + ".jpg"));
        vArguments.insert(vArguments.end(), vMore.begin(), vMore.end());
        return RunTool(m_folder, vArguments);
    }
    std::string Result(std::vector<std::string> vMore)
    {
        const ToolRun run = Fuse(std::move(vMore));
        EXPECT_EQ(0, run.nStatus) << run.sErr;
        return ReadText(m_folder.Path("out.png"));
    }

    const TestFolder m_folder;
};

}  // namespace

TEST_F(FaceOptionsTest, ABoxLeadsTheToneAndNoneDoesNot)
{
    const std::string sPlain = Result({"--face", "none"});
    EXPECT_EQ(sPlain, Result({}));  // there is no model to look with
    const std::string sBox = Result({"--face", "20,20,300,220", "--set", "nAIFaceHeightWidthThres=10"});
    EXPECT_NE(sPlain, sBox);
    EXPECT_EQ(sPlain, Result({"--face", "20,20,50,50"}));  // too small to count
    EXPECT_EQ(Result({"--face", "0,20,319,239", "--set", "nAIFaceHeightWidthThres=10"}),
              Result({"--face", "-40,20,9999999999,800", "--set", "nAIFaceHeightWidthThres=10"}));  // cut, and told
    EXPECT_EQ(sBox, Result({"--face", "1,1,9,9", "--face", "20,20,300,220", "--set", "nAIFaceHeightWidthThres=10"}));
}

// The library would end the process without a model: the program never lets it come to that.
TEST_F(FaceOptionsTest, WithoutTheModelNoFaceIsLookedFor)
{
    for (const std::vector<std::string>& vMore : {std::vector<std::string>{"--face", "auto"}, {"--set", "bAIMask=1"}}) {
        const ToolRun run = Fuse(vMore);
        EXPECT_EQ(0, run.nStatus);
        EXPECT_NE(std::string::npos, run.sErr.find("no face is looked for"));
    }
}

TEST_F(FaceOptionsTest, WrongUse)
{
    for (const char* pFace : {"somebody", "1,2,3", "1,2,3,4,5", "9,9,3,3", ""}) {
        EXPECT_EQ(2, Fuse({"--face", pFace}).nStatus) << pFace;
    }
    for (const char* pFace : {"300,20,20,220", "20,220,300,20", "320,20,400,220", "-9,-9,0,-1",
                              "9999999999,0,9999999999,99", "0,0,300,-9999999999"}) {
        const ToolRun run = Fuse({"--face", pFace});
        EXPECT_EQ(2, run.nStatus) << pFace;
        EXPECT_NE(std::string::npos, run.sErr.find("the picture, which is 320x240")) << run.sErr;
    }
    EXPECT_EQ(2, Fuse({"--face", "auto", "--face", "1,2,3,4"}).nStatus);
    EXPECT_EQ(2, Fuse({"--face-look", "mirror"}).nStatus);
}

}  // namespace vkr::tool
