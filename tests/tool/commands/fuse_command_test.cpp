#include <gtest/gtest.h>

#include <algorithm>

#include "pictures/colour_convert.h"
#include "run_tool.h"
#include "tagged_jpeg.h"

namespace vkr::tool {

namespace {

using Names = std::vector<std::string>;

Names With(Names vNames, const Names& vMore)
{
    vNames.insert(vNames.end(), vMore.begin(), vMore.end());
    return vNames;
}

// A burst in a folder of its own, in several forms.
class FuseCommand : public testing::Test {
protected:
    Names WriteJpegs(int nQuality = 95)
    {
        Names vNames;
        for (size_t k = 0; k < m_vFrames.size(); ++k) {
            vNames.push_back(std::to_string(k) + ".jpg");
            WriteWholeFile(m_folder.Path(vNames.back()), WriteJpeg(m_vFrames[k], nQuality));
        }
        return vNames;
    }

    Names WriteRaws(const std::string& sEnd)
    {
        Names vNames;
        for (size_t k = 0; k < m_vFrames.size(); ++k) {
            vNames.push_back(std::to_string(k) + "." + sEnd);
            WriteWholeFile(m_folder.Path(vNames.back()), WriteRaw(m_vFrames[k]));
        }
        return vNames;
    }

    Names WriteTagged(const std::vector<Tags>& vTags)
    {
        Names vNames;
        for (size_t k = 0; k < m_vFrames.size(); ++k) {
            vNames.push_back(std::to_string(k) + ".jpg");
            WriteWholeFile(m_folder.Path(vNames.back()), WithTags(WriteJpeg(m_vFrames[k], 95), vTags[k]));
        }
        return vNames;
    }

    ToolRun Fuse(const Names& vImages, const std::string& sOutput, const Names& vMore = {})
    {
        return RunTool(m_folder, With(With(With({"fuse"}, vImages), {"-o", sOutput}), vMore));
    }

    // What the program prints, as params.txt.
    void WriteParams(const Names& vArguments)
    {
        const ToolRun params = RunTool(m_folder, vArguments);
        EXPECT_EQ(0, params.nStatus) << params.sErr;
        WriteWholeFile(m_folder.Path("params.txt"), Bytes(params.sOut.begin(), params.sOut.end()));
    }

    void ExpectFused(const ToolRun& run)
    {
        EXPECT_EQ(0, run.nStatus) << run.sErr;
        EXPECT_EQ("", run.sOut);
    }

    Bytes File(const std::string& sName) { return ReadWholeFile(m_folder.Path(sName)); }

    Frame JpegFrame(const std::string& sName)
    {
        std::string sWarning;
        return ReadJpeg(File(sName), sName, sWarning).frame;
    }

    TestFolder m_folder;
    std::vector<Frame> m_vFrames = DrawnFrames();
};

}  // namespace

// The planes of the files go in as they are and the result's planes into the file: the same burst as raw bytes gives
// the same JPEG.
TEST_F(FuseCommand, ConvertsNoColoursBetweenJpegs)
{
    const Names vJpegs = WriteJpegs();
    ExpectFused(Fuse(vJpegs, "jpeg.jpg"));
    for (size_t k = 0; k < m_vFrames.size(); ++k) m_vFrames[k] = JpegFrame(vJpegs[k]);
    ExpectFused(Fuse(WriteRaws("yuv"), "raw.jpg", {"--raw", "nv12", "--size", "160x120"}));
    EXPECT_EQ(File("raw.jpg"), File("jpeg.jpg"));
    EXPECT_EQ(160, JpegFrame("jpeg.jpg").nWidth);
}

TEST_F(FuseCommand, TakesRawFramesOfBothOrders)
{
    ExpectFused(Fuse(WriteRaws("nv12"), "a.raw", {"--raw", "nv12", "--size", "160x120"}));
    for (Frame& frame : m_vFrames) {
        for (size_t i = 0; i < frame.vUV.size(); i += 2) std::swap(frame.vUV[i], frame.vUV[i + 1]);
    }
    ExpectFused(Fuse(WriteRaws("nv21"), "b.raw", {"--raw", "nv21", "--size", "160x120"}));
    ExpectFused(Fuse({"0.nv21", "1.nv21", "2.nv21"}, "b.jpg", {"--raw", "nv21", "--size", "160x120"}));
    ExpectFused(Fuse({"0.nv12", "1.nv12", "2.nv12"}, "a.jpg", {"--raw", "nv12", "--size", "160x120"}));
    const Bytes vA = File("a.raw"), vB = File("b.raw");
    ASSERT_EQ(160u * 120 / 2 * 3, vA.size());
    ASSERT_EQ(vA.size(), vB.size());
    EXPECT_TRUE(std::equal(vA.begin(), vA.begin() + 160 * 120, vB.begin()));
    for (size_t i = 160 * 120; i < vA.size(); ++i) ASSERT_EQ(vA[i], vB[i ^ 1]) << i;
    EXPECT_EQ(File("a.jpg"), File("b.jpg"));
}

TEST_F(FuseCommand, TakesAndWritesPng)
{
    Names vPngs;
    for (size_t k = 0; k < m_vFrames.size(); ++k) {
        vPngs.push_back(std::to_string(k) + ".png");
        WriteWholeFile(m_folder.Path(vPngs.back()), WritePng(RgbFromFrame(m_vFrames[k])));
    }
    ExpectFused(Fuse(vPngs, "out.png"));
    const Raster result = ReadPng(File("out.png"), "");
    EXPECT_EQ(160, result.nWidth);
    EXPECT_EQ(120, result.nHeight);
    ExpectFused(Fuse(vPngs, "out.jpg"));
    const Raster viaJpeg = RgbFromFrame(JpegFrame("out.jpg"));
    double fSum = 0;
    for (size_t i = 0; i < result.vSamples.size(); ++i) fSum += std::abs(result.vSamples[i] - viaJpeg.vSamples[i]);
    EXPECT_LT(fSum / static_cast<double>(result.vSamples.size()), 3);
}

TEST_F(FuseCommand, BrightensTheDarkAndDarkensTheBright)
{
    ExpectFused(Fuse(WriteRaws("yuv"), "out.raw", {"--raw", "nv12", "--size", "160x120"}));
    const Frame result = ReadRaw(File("out.raw"), 160, 120, false, "");
    const auto mean = [](const Frame& frame) {
        double fSum = 0;
        for (const uint8_t n : frame.vY) fSum += n;
        return fSum / static_cast<double>(frame.vY.size());
    };
    EXPECT_GT(mean(result), mean(m_vFrames[0]) + 10);
    EXPECT_LT(mean(result), mean(m_vFrames[2]) - 10);
}

TEST_F(FuseCommand, OrdersByMeanAndTakesTheMiddleOne)
{
    WriteJpegs();
    const ToolRun shuffled = Fuse({"2.jpg", "0.jpg", "1.jpg"}, "a.jpg");
    ExpectFused(shuffled);
    EXPECT_NE(std::string::npos, shuffled.sErr.find("by mean luma")) << shuffled.sErr;
    ExpectFused(Fuse({"0.jpg", "1.jpg", "2.jpg"}, "b.jpg", {"--reference", "1"}));
    ExpectFused(Fuse({"0.jpg", "1.jpg", "2.jpg"}, "c.jpg", {"--reference", "2"}));
    EXPECT_EQ(File("b.jpg"), File("a.jpg"));
    EXPECT_NE(File("b.jpg"), File("c.jpg"));
}

TEST_F(FuseCommand, OrdersByExif)
{
    const ToolRun run = Fuse(WriteTagged({{"1/2", "", ""}, {"1/8", "", ""}, {"1/30", "", ""}}), "out.jpg");
    ExpectFused(run);
    EXPECT_NE(std::string::npos, run.sErr.find("by EXIF exposure")) << run.sErr;
    EXPECT_LT(run.sErr.find("2.jpg"), run.sErr.find("1.jpg"));
    EXPECT_LT(run.sErr.find("1.jpg"), run.sErr.find("0.jpg"));
    EXPECT_EQ("1/8", TagOf(File("out.jpg"), "Exif.Photo.ExposureTime"));
}

TEST_F(FuseCommand, KeepsTheOrientationInJpegAndTurnsPng)
{
    const Names vNames = WriteTagged({{"1/30", "", "", 6}, {"1/8", "", "", 6}, {"1/2", "", "", 6}});
    ExpectFused(Fuse(vNames, "out.jpg", {"--quality", "100"}));
    ExpectFused(Fuse(vNames, "out.png"));
    EXPECT_EQ("6", TagOf(File("out.jpg"), "Exif.Image.Orientation"));
    const Raster stored = RgbFromFrame(JpegFrame("out.jpg")), upright = ReadPng(File("out.png"), "");
    ASSERT_EQ(160, stored.nWidth);
    ASSERT_EQ(120, upright.nWidth);
    for (int y = 0; y < 160; y += 13) {  // the stored left column is the upright first row, from right to left
        EXPECT_NEAR(stored.Row(119)[3 * y + 1], upright.Row(y)[1], 8) << y;
        EXPECT_NEAR(stored.Row(0)[3 * y + 1], upright.Row(y)[3 * 119 + 1], 8) << y;
    }
}

TEST_F(FuseCommand, CutsOddPicturesAndSaysSo)
{
    Raster odd;
    odd.Resize(65, 47, 3);
    std::fill(odd.vSamples.begin(), odd.vSamples.end(), uint8_t{90});
    for (const char* pName : {"a.png", "b.png"}) WriteWholeFile(m_folder.Path(pName), WritePng(odd));
    const ToolRun run = Fuse({"a.png", "b.png"}, "out.png");
    ExpectFused(run);
    EXPECT_NE(std::string::npos, run.sErr.find("a.png: cut from 65x47 to even sides, 64x46")) << run.sErr;
    EXPECT_EQ(64, ReadPng(File("out.png"), "").nWidth);
}

TEST_F(FuseCommand, GivesASingleFrameBack)
{
    WriteJpegs();
    ExpectFused(Fuse({"1.jpg"}, "out.jpg"));
    EXPECT_EQ(120, JpegFrame("out.jpg").nHeight);
}

TEST_F(FuseCommand, KeepsTheLibraryQuietUnlessAsked)
{
    const Names vNames = WriteJpegs();
    const ToolRun quiet = Fuse(vNames, "out.jpg");
    ExpectFused(quiet);
    EXPECT_EQ(std::string::npos, quiet.sErr.find("====")) << quiet.sErr;
    const ToolRun verbose = Fuse(vNames, "out.jpg", {"--verbose"});
    ExpectFused(verbose);
    EXPECT_NE(std::string::npos, verbose.sErr.find("==== ==== AlignImages Done")) << verbose.sErr;
}

TEST_F(FuseCommand, PrintsAStageTable)
{
    const ToolRun run = Fuse(WriteJpegs(), "out.jpg", {"--timings"});
    ExpectFused(run);
    for (const char* pStage : {"AlignImages Done", "PyramidFusion Done", "HDR Process Time"}) {
        EXPECT_NE(std::string::npos, run.sErr.find(pStage)) << pStage << run.sErr;
    }
    EXPECT_EQ(std::string::npos, run.sErr.find("===="));
}

TEST_F(FuseCommand, WritesDumpsOnlyWhereAsked)
{
    const Names vNames = WriteJpegs();
    ExpectFused(Fuse(vNames, "out.jpg"));
    EXPECT_EQ((Names{"0.jpg", "1.jpg", "2.jpg", "out.jpg"}), m_folder.Names());
    ExpectFused(Fuse(vNames, "dumped.jpg", {"--dump", "debug"}));
    EXPECT_EQ((Names{"0.jpg", "1.jpg", "2.jpg", "debug/", "dumped.jpg", "out.jpg"}), m_folder.Names());
    EXPECT_EQ(File("out.jpg"), File("dumped.jpg"));
    for (const char* pName : {"debug/result/EV0.bmp", "debug/Dump/SatuMask.bmp"}) {
        EXPECT_TRUE(std::filesystem::exists(m_folder.Path(pName))) << pName;
    }
}

TEST_F(FuseCommand, WritesStagesAsPictures)
{
    ExpectFused(Fuse(WriteJpegs(), "out.jpg", {"--stages", "stages"}));
    const Raster work = ReadPng(File("stages/work0.png"), "");
    EXPECT_EQ(80, work.nWidth);
    const Raster aligned = ReadPng(File("stages/aligned1.png"), "");
    EXPECT_EQ(160, aligned.nWidth);
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("stages/fused.0.png")));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("stages/fused.3.png")));
}

TEST_F(FuseCommand, GivesTheSameBytesWithoutVectors)
{
    const Names vNames = WriteRaws("yuv"), vRaw = {"--raw", "nv12", "--size", "160x120"};
    ExpectFused(Fuse(vNames, "on.raw", vRaw));
    ExpectFused(Fuse(vNames, "off.raw", With(vRaw, {"--simd", "off"})));
    EXPECT_EQ(File("on.raw"), File("off.raw"));
}

// The smoothing behind the weights carries its roundings by blocks of rows; with one weight for every brightness the
// team must not show.
TEST_F(FuseCommand, GivesTheSameBytesFromAnyTeam)
{
    const Names vNames = WriteRaws("yuv");
    Names vOptions = {"--raw", "nv12", "--size", "160x120"};
    for (int i = 0; i < 8; ++i) {
        for (const char* pList : {"pBrightnessWList_", "pBrightnessWListRef_"}) {
            vOptions.push_back("--set");
            vOptions.push_back(pList + std::to_string(i) + "=64");
        }
    }
    ExpectFused(Fuse(vNames, "one.raw", With(vOptions, {"--threads", "1"})));
    ExpectFused(Fuse(vNames, "five.raw", With(vOptions, {"--threads", "5"})));
    EXPECT_EQ(File("one.raw"), File("five.raw"));
}

TEST_F(FuseCommand, ObeysParametersFromFileAndLine)
{
    const Names vNames = WriteRaws("yuv"), vRaw = {"--raw", "nv12", "--size", "160x120"};
    ExpectFused(Fuse(vNames, "plain.raw", vRaw));
    const Names vSets = {"--set", "bContrastEnable=0", "--set", "nMaxGamma=100",
                         "--set", "nRatio_0=40",       "--set", "nRatio_1=50"};
    ExpectFused(Fuse(vNames, "set.raw", With(vRaw, vSets)));
    WriteParams(With({"params", "--for", "160x120"}, vSets));  // as fuse chooses by the size of the frames
    ExpectFused(Fuse(vNames, "file.raw", With(vRaw, {"--params", "params.txt"})));
    EXPECT_NE(File("plain.raw"), File("set.raw"));
    EXPECT_EQ(File("set.raw"), File("file.raw"));
}

// The drawn exposures are two stops apart. Nothing can be measured in flat ones that are too dark or blown out.
TEST_F(FuseCommand, MeasuresTheExposureRatios)
{
    const Names vNames = WriteJpegs(), vVerbose = {"--verbose"};
    const auto says = [&](const Names& vArguments, const std::string& sLine) {
        const ToolRun run = Fuse(vNames, "out.jpg", With(vVerbose, vArguments));
        EXPECT_NE(std::string::npos, run.sErr.find(sLine)) << sLine << "\n" << run.sErr;
    };
    says({}, "nRatio_0=4");
    says({"--set", "nRatio_0=100"}, "nRatio_0=100: 0.jpg to 1.jpg, 6.25 times");
    says({"--preset", "default"}, "nRatio_0=32: ");
    for (size_t k = 0; k < 3; ++k) {
        std::fill(m_vFrames[k].vY.begin(), m_vFrames[k].vY.end(), static_cast<uint8_t>(k == 0 ? 3 : 250 + k));
        std::fill(m_vFrames[k].vUV.begin(), m_vFrames[k].vUV.end(), uint8_t{128});
    }
    WriteJpegs();
    says({}, "nRatio_0=32: ");
}

TEST_F(FuseCommand, SaysWhereExifDiffersFromWhatIsMeasured)
{
    const ToolRun near = Fuse(WriteTagged({{"1/80", "", ""}, {"1/20", "", ""}, {"1/5", "", ""}}), "out.jpg");
    EXPECT_EQ(std::string::npos, near.sErr.find("by EXIF; ")) << near.sErr;
    const ToolRun far = Fuse(WriteTagged({{"1/80", "", ""}, {"1/20", "", ""}, {"1/1", "", ""}}), "out.jpg");
    EXPECT_EQ(std::string::npos, far.sErr.find("0.jpg to 1.jpg")) << far.sErr;
    EXPECT_NE(std::string::npos, far.sErr.find("20.00 by EXIF; taken as measured")) << far.sErr;
}

TEST_F(FuseCommand, TakesThePresetThatIsNamed)
{
    const Names vNames = WriteRaws("yuv"), vRaw = {"--raw", "nv12", "--size", "160x120"};
    ExpectFused(Fuse(vNames, "default.raw", With(vRaw, {"--preset", "default"})));
    WriteParams({"params", "--preset", "default", "--set", "bLogoEnable=0"});
    ExpectFused(Fuse(vNames, "file.raw", With(vRaw, {"--params", "params.txt"})));
    EXPECT_EQ(File("file.raw"), File("default.raw"));
    ExpectFused(Fuse(vNames, "photo.raw", With(vRaw, {"--preset", "photo"})));
    ExpectFused(Fuse(vNames, "plain.raw", vRaw));
    EXPECT_EQ(File("photo.raw"), File("plain.raw"));
}

}  // namespace vkr::tool
