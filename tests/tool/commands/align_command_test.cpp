#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "pictures/colour_convert.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {

using Names = std::vector<std::string>;

constexpr int kWidth = 640, kHeight = 480;
const Names kRaw = {"--raw", "nv12", "--size", "640x480"};

Names With(Names vNames, const Names& vMore)
{
    vNames.insert(vNames.end(), vMore.begin(), vMore.end());
    return vNames;
}

// The part of a larger frame whose first column and row are these, both even.
Frame Part(const Frame& frame, int nX, int nY)
{
    Frame part;
    part.Resize(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        std::copy_n(frame.vY.begin() + (nY + y) * frame.nWidth + nX, kWidth, part.vY.begin() + y * kWidth);
    }
    for (int y = 0; y < kHeight / 2; ++y) {
        std::copy_n(frame.vUV.begin() + (nY / 2 + y) * frame.nWidth + nX, kWidth, part.vUV.begin() + y * kWidth);
    }
    return part;
}

Frame Flat(uint8_t nLuma)
{
    Frame frame;
    frame.Resize(kWidth, kHeight);
    std::fill(frame.vY.begin(), frame.vY.end(), nLuma);
    std::fill(frame.vUV.begin(), frame.vUV.end(), uint8_t{128});
    return frame;
}

std::vector<std::string> Lines(const std::string& sText)
{
    std::istringstream stream(sText);
    std::vector<std::string> vLines;
    for (std::string sLine; std::getline(stream, sLine);) vLines.push_back(sLine);
    return vLines;
}

// Bursts as raw frames a.yuv, b.yuv, c.yuv, darkest first.
class AlignCommand : public testing::Test {
protected:
    void WriteFrames(const std::vector<Frame>& vFrames)
    {
        m_vFrames = vFrames;
        for (size_t k = 0; k < vFrames.size(); ++k) {
            WriteWholeFile(m_folder.Path(std::string(1, static_cast<char>('a' + k)) + ".yuv"), WriteRaw(vFrames[k]));
        }
    }
    void WriteFlat() { WriteFrames({Flat(40), Flat(110), Flat(200)}); }

    // Windows of one scene: the middle one is 6 to the right of the darkest and 4 above it, the brightest 2 to the left
    // of that and 8 below.
    void WriteMoved()
    {
        const std::vector<Frame> vScene = DrawnFrames(kWidth + 40, kHeight + 40);
        WriteFrames({Part(vScene[0], 20, 20), Part(vScene[1], 26, 16), Part(vScene[2], 24, 24)});
    }

    // As above, 40 to the left and 32 up: beyond the reach of the first attempt.
    void WriteShaken()
    {
        const std::vector<Frame> vScene = DrawnFrames(kWidth + 100, kHeight + 100);
        WriteFrames({Part(vScene[0], 50, 50), Part(vScene[1], 50, 50), Part(vScene[2], 10, 18)});
    }

    ToolRun Run(const Names& vArguments)
    {
        const ToolRun run = RunTool(m_folder, With(vArguments, kRaw));
        EXPECT_EQ(0, run.nStatus) << run.sErr;
        return run;
    }

    Raster Png(const std::string& sName) { return ReadPng(ReadWholeFile(m_folder.Path(sName)), sName); }

    TestFolder m_folder;
    std::vector<Frame> m_vFrames;
};

// Of the green values, away from the borders.
double MeanDistance(const Raster& a, const Raster& b, int nBorder)
{
    double fSum = 0;
    int nCount = 0;
    for (int y = nBorder; y < a.nHeight - nBorder; ++y) {
        for (int x = nBorder; x < a.nWidth - nBorder; ++x, ++nCount) {
            fSum += std::abs(a.Row(y)[3 * x + 1] - b.Row(y)[3 * x + 1]);
        }
    }
    return fSum / nCount;
}

}  // namespace

TEST_F(AlignCommand, WritesFramesAndMasksByExposure)
{
    WriteMoved();
    const ToolRun run = Run({"align", "c.yuv", "a.yuv", "b.yuv", "-o", "deep/out", "--set", "nGlobalAlignEnable=0"});
    EXPECT_EQ("", run.sOut);
    for (int k = 0; k < 3; ++k) {
        const std::string sEnd = "_" + std::to_string(k) + ".png";
        EXPECT_EQ(RgbFromFrame(m_vFrames[static_cast<size_t>(k)]).vSamples, Png("deep/out/aligned" + sEnd).vSamples);
        const Raster mask = Png("deep/out/mask" + sEnd);
        EXPECT_EQ(k == 1 ? kWidth : kWidth / 2, mask.nWidth);
        EXPECT_EQ(255, *std::min_element(mask.vSamples.begin(), mask.vSamples.end()));
    }
    EXPECT_EQ((Names{"a.yuv", "b.yuv", "c.yuv", "deep/"}), m_folder.Names());
}

TEST_F(AlignCommand, BringsAMovedBurstOntoTheReference)
{
    WriteMoved();
    const ToolRun run = Run({"align", "a.yuv", "b.yuv", "c.yuv", "-o", "out"});
    const double vShift[2][2] = {{6, -4}, {-2, 8}};  // takes points of the second to points of the first
    ASSERT_EQ(2u, Lines(run.sOut).size()) << run.sOut;
    for (int j = 0; j < 2; ++j) {
        const std::string sLine = Lines(run.sOut)[static_cast<size_t>(j)];
        double h[9] = {};
        const size_t nAt = sLine.find("homography ");
        ASSERT_NE(std::string::npos, nAt) << sLine;
        ASSERT_EQ(9, std::sscanf(sLine.c_str() + nAt, "homography %lf %lf %lf %lf %lf %lf %lf %lf %lf", &h[0], &h[1],
                                 &h[2], &h[3], &h[4], &h[5], &h[6], &h[7], &h[8]));
        EXPECT_NEAR(vShift[j][0], h[2] / h[8], 1) << sLine;
        EXPECT_NEAR(vShift[j][1], h[5] / h[8], 1) << sLine;
    }
    const Raster moved = RgbFromFrame(Part(DrawnFrames(kWidth + 40, kHeight + 40)[2], 26, 16));
    EXPECT_LT(MeanDistance(moved, Png("out/aligned_2.png"), 32),
              0.3 * MeanDistance(moved, RgbFromFrame(m_vFrames[2]), 32));
}

TEST_F(AlignCommand, SaysWhatCouldNotBeAligned)
{
    WriteFlat();
    const std::vector<std::string> vLines = Lines(Run({"align", "c.yuv", "b.yuv", "a.yuv", "-o", "out"}).sOut);
    ASSERT_EQ(2u, vLines.size());
    for (size_t j = 0; j < 2; ++j) {
        EXPECT_EQ(0u, vLines[j].find(std::to_string(j) + " " + std::to_string(j + 1) + ": features ")) << vLines[j];
        EXPECT_NE(std::string::npos, vLines[j].find(", could not be aligned")) << vLines[j];
    }
    EXPECT_EQ(RgbFromFrame(m_vFrames[2]).vSamples, Png("out/aligned_2.png").vSamples);
    EXPECT_EQ((Names{"a.yuv", "b.yuv", "c.yuv", "out/"}), m_folder.Names());
}

TEST_F(AlignCommand, KeepsWhatIsDroppedAfterwards)
{
    WriteFlat();
    Run({"align", "a.yuv", "b.yuv", "c.yuv", "-o", "out", "--set", "CMultipleImagesAlignFilter.bDropAlignFail=1"});
    for (int k = 0; k < 3; ++k) {
        EXPECT_TRUE(std::filesystem::exists(m_folder.Path("out/aligned_" + std::to_string(k) + ".png"))) << k;
    }
}

TEST_F(AlignCommand, BringsAShakenFrameNearFirst)
{
    WriteShaken();
    const Names vAlign = {"align", "a.yuv", "b.yuv", "c.yuv", "-o", "out"};
    const ToolRun once = Run(With(vAlign, {"--set", "CMultipleImagesAlignFilter.bDropAlignFail=0"}));
    EXPECT_NE(std::string::npos, once.sOut.find("could not be aligned")) << once.sOut;
    const ToolRun run = Run(vAlign);
    EXPECT_EQ(std::string::npos, run.sOut.find("could not be aligned")) << run.sOut;
    EXPECT_NE(std::string::npos, run.sErr.find("vkrhdr: c.yuv is moved by -40, -32 pixels")) << run.sErr;
    const Raster there = RgbFromFrame(Part(DrawnFrames(kWidth + 100, kHeight + 100)[2], 50, 50));
    EXPECT_LT(MeanDistance(there, Png("out/aligned_2.png"), 48),
              0.3 * MeanDistance(there, RgbFromFrame(m_vFrames[2]), 48));
}

// The darkest frame stands on its head; the others keep their numbers and their ratio.
TEST_F(AlignCommand, LeavesOutWhatBelongsNowhere)
{
    WriteMoved();
    std::reverse(m_vFrames[0].vY.begin(), m_vFrames[0].vY.end());
    WriteFrames(m_vFrames);
    const ToolRun run = Run({"align", "a.yuv", "b.yuv", "c.yuv", "-o", "out"});
    EXPECT_NE(std::string::npos, run.sErr.find("a.yuv and what is darker is left out")) << run.sErr;
    ASSERT_EQ(1u, Lines(run.sOut).size()) << run.sOut;
    EXPECT_EQ(0u, run.sOut.find("1 2: features")) << run.sOut;
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("out/aligned_0.png")));
    EXPECT_EQ(RgbFromFrame(m_vFrames[1]).vSamples, Png("out/aligned_1.png").vSamples);
    const ToolRun fused = Run({"fuse", "a.yuv", "b.yuv", "c.yuv", "-o", "out.jpg", "--stages", "stages"});
    EXPECT_NE(std::string::npos, fused.sErr.find("a.yuv and what is darker is left out")) << fused.sErr;
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("stages/aligned2.png")));
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path("stages/aligned1_2.png")));
}

// Beside all else that looks between the stages.
TEST_F(AlignCommand, HasAWordInFuse)
{
    WriteFlat();
    const Names vFuse = {"fuse", "a.yuv", "b.yuv", "c.yuv", "-o", "out.jpg"};
    const ToolRun run = Run(With(vFuse, {"--stages", "stages", "--timings"}));
    EXPECT_EQ("", run.sOut);
    for (const char* pLine :
         {"vkrhdr: a.yuv and b.yuv could not be aligned; taken as they lie\n",
          "vkrhdr: b.yuv and c.yuv could not be aligned; taken as they lie\n", "AlignImages Done"}) {
        EXPECT_NE(std::string::npos, run.sErr.find(pLine)) << pLine << run.sErr;
    }
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("stages/aligned1.png")));
    const ToolRun dropped = Run(With(vFuse, {"--set", "CMultipleImagesAlignFilter.bDropAlignFail=1"}));
    EXPECT_NE(std::string::npos, dropped.sErr.find("a.yuv and what is darker is left out")) << dropped.sErr;
    const ToolRun off = Run(With(vFuse, {"--set", "nGlobalAlignEnable=0"}));
    EXPECT_EQ(std::string::npos, off.sErr.find("could not be aligned")) << off.sErr;
}

}  // namespace vkr::tool
