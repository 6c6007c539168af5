#include <gtest/gtest.h>

#include "face/face_search.h"
#include "pictures/tool_error.h"
#include "run_tool.h"
#include "support/tiny_model.h"
#include "tagged_jpeg.h"

namespace vkr::tool {

namespace {

// A picture of 320 x 240 that a camera took lying on its side, and a network that sees the same face in all of them.
class FacesCommand : public testing::Test {
protected:
    void SetUp() override
    {
        const Bytes vJpeg = WriteJpeg(DrawnFrames(320, 240)[1], 95);
        WriteWholeFile(m_folder.Path("a.jpg"), WithTags(vJpeg, {"", "", "", 6}));
        WriteWholeFile(m_folder.Path("b.jpg"), vJpeg);
    }
    void MakeModel(const std::string& sRoot)
    {
        std::filesystem::create_directories(m_folder.Path(sRoot + "/models"));
        const std::string sModel = ConstantFaces({{0.9f, {0.25f, 0.125f, 0.75f, 0.5f}}}).Bytes();
        WriteWholeFile(m_folder.Path(sRoot + "/" + kFaceModelPath), Bytes(sModel.begin(), sModel.end()));
    }
    bool IsGreen(const Raster& picture, int x, int y)
    {
        const uint8_t* pPixel = picture.Row(y) + 3 * x;
        return pPixel[0] == 0 && pPixel[1] == 255 && pPixel[2] == 0;
    }

    const TestFolder m_folder;
};

}  // namespace

#if VKRHDR_WITH_TFLITE
TEST_F(FacesCommand, PrintsBoxesOfTheStoredPictureAndDrawsThemUpright)
{
    MakeModel(".");
    ToolRun run = RunTool(m_folder, {"faces", "b.jpg"});
    EXPECT_EQ(0, run.nStatus) << run.sErr;
    EXPECT_EQ("0.900 80,30,240,120\n", run.sOut);
    EXPECT_TRUE(IsGreen(ReadPng(ReadWholeFile(m_folder.Path("b_faces.png")), "b"), 80, 30));

    // Upright, the picture is 240 x 320: the face is found at 60 .. 180, 40 .. 160 there.
    run = RunTool(m_folder, {"faces", "a.jpg", "-o", m_folder.Path("boxes.png")});
    EXPECT_EQ(0, run.nStatus) << run.sErr;
    EXPECT_EQ("0.900 40,60,160,180\n", run.sOut);
    const Raster drawn = ReadPng(ReadWholeFile(m_folder.Path("boxes.png")), "boxes");
    ASSERT_EQ(240, drawn.nWidth);
    EXPECT_TRUE(IsGreen(drawn, 120, 40));
    EXPECT_TRUE(IsGreen(drawn, 179, 100));
    EXPECT_FALSE(IsGreen(drawn, 120, 100));
}

// The working folder may be any: the library finds the model all the same, and writes its debug files where it should.
TEST_F(FacesCommand, FuseTakesTheModelFromTheSharedFolder)
{
    MakeModel("elsewhere");
    setenv("VKRHDR_TEST_SHARE", m_folder.Path("elsewhere").c_str(), 1);
    const auto Fuse = [&](std::vector<std::string> vMore) {
        std::vector<std::string> vArguments = {"fuse", "b.jpg", "b.jpg", "-o", "out.png"};
        vArguments.insert(vArguments.end(), vMore.begin(), vMore.end());
        const ToolRun run = RunTool(m_folder, vArguments);
        EXPECT_EQ(0, run.nStatus) << run.sErr;
        return run.sErr;
    };
    EXPECT_NE(std::string::npos, Fuse({"--verbose"}).find("==AI init"));
    EXPECT_EQ(std::string::npos, Fuse({"--verbose", "--face", "none"}).find("==AI init"));
    EXPECT_EQ(std::string::npos, Fuse({"--verbose", "--preset", "default"}).find("==AI init"));
    EXPECT_NE(std::string::npos, Fuse({"--verbose", "--dump", "dumps"}).find("==AI init"));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("dumps/AISeg/Input_Level0.bmp")));
    unsetenv("VKRHDR_TEST_SHARE");
}

TEST_F(FacesCommand, NamesADamagedModelAndFusesWithout)
{
    MakeModel(".");
    const std::string sModel = m_folder.Path(kFaceModelPath);
    const auto nWhole = std::filesystem::file_size(sModel);
    for (const uintmax_t nSize : {nWhole / 2, uintmax_t{0}, uintmax_t{1} << 30}) {
        std::filesystem::resize_file(sModel, nSize);
        const ToolRun faces = RunTool(m_folder, {"faces", "b.jpg"});
        EXPECT_EQ(1, faces.nStatus);
        EXPECT_EQ(1, faces.ErrorLines()) << faces.sErr;
        EXPECT_NE(std::string::npos, faces.sErr.find(std::string(kFaceModelPath) + " is damaged")) << faces.sErr;
        const ToolRun fuse = RunTool(m_folder, {"fuse", "b.jpg", "b.jpg", "-o", "out.png"});
        EXPECT_EQ(0, fuse.nStatus);
        EXPECT_NE(std::string::npos, fuse.sErr.find("no face is looked for: ")) << fuse.sErr;
    }
}
#endif

TEST_F(FacesCommand, WithoutTheModelItSaysWhatHelps)
{
    const ToolRun run = RunTool(m_folder, {"faces", "a.jpg"});
    EXPECT_EQ(1, run.nStatus);
    EXPECT_NE(std::string::npos, run.sErr.find("no face can be found: "));
    EXPECT_EQ(2, RunTool(m_folder, {"faces", "a.jpg", "-o", "boxes.jpg"}).nStatus);
}

}  // namespace vkr::tool
