#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "foundation/timing.h"
#include "interface/engine_lifecycle.h"
#include "support/for_threads.h"
#include "support/parameter_file.h"
#include "support/quiet_lines.h"
#include "support/test_burst.h"
#include "support/work_folder.h"
#include "vkrHdr.h"

namespace vkr {
namespace {

vkrHdrInitParam InitParam(const char* pPath)
{
    return {pPath, nullptr, 0};
}

// An engine on default parameters without debug pictures, for each test.
class ApiTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(0, vkrHdrInit(InitParam(m_file.Path()))); }
    void TearDown() override { EXPECT_EQ(0, vkrHdrUninit()); }

    static void AddBurst(int w, int h, int nExposureNum, int nPad = 0)
    {
        for (int k = 0; k < nExposureNum; ++k) {
            HostPicture picture = DrawExposure(w, h, k, nExposureNum, nPad);
            ASSERT_EQ(0, vkrHdrAddFrame(static_cast<uint32_t>(k), picture.Frame()));
        }
    }
    static std::vector<uint8_t> Fuse(int w, int h, int nExposureNum, int nReference, int nPad = 0)
    {
        AddBurst(w, h, nExposureNum, nPad);
        HostPicture out(w, h, nPad);
        EXPECT_EQ(0, vkrHdrRender(nExposureNum, nReference, 0, 1, nullptr, out.Frame()));
        EXPECT_TRUE(out.PaddingIntact());
        return out.Pixels();
    }
    // Refused: -1, a line that holds sWords, the output untouched; and the engine works on.
    void ExpectRenderRefused(int nExposureNum, int nReference, vkrHdrFrame* pOut, const char* pWords)
    {
        m_lines.Text().clear();
        EXPECT_EQ(-1, vkrHdrRender(nExposureNum, nReference, 0, 1, nullptr, pOut));
        EXPECT_TRUE(m_lines.Contains(pWords)) << m_lines.Text();
    }
    void ExpectFrameRefused(uint32_t nIndex, const vkrHdrFrame* pFrame, const char* pWords)
    {
        m_lines.Text().clear();
        EXPECT_EQ(-1, vkrHdrAddFrame(nIndex, pFrame));
        EXPECT_TRUE(m_lines.Contains(pWords)) << m_lines.Text();
    }

    LinesScope m_lines;
    ParameterFile m_file;
};

TEST(ApiWithoutEngine, EveryCallAnswers)
{
    LinesScope lines;
    HostPicture picture(4, 4);
    EXPECT_EQ(0, vkrHdrUninit());
    EXPECT_EQ(-1, vkrHdrAddFrame(0, picture.Frame()));
    EXPECT_TRUE(lines.Contains("no engine"));
    lines.Text().clear();
    EXPECT_EQ(-1, vkrHdrRender(1, 0, 0, 1, nullptr, picture.Frame()));
    EXPECT_TRUE(lines.Contains("no engine"));
    EXPECT_TRUE(picture.Untouched());
    EXPECT_EQ(0, vkrHdrAdvancedFeature());
    EXPECT_EQ(0, vkrHdrUninit());
}

TEST(ApiWithoutEngine, InitRefusesModeAndPaths)
{
    LinesScope lines;
    EXPECT_EQ(-1, vkrHdrInit({"anything", nullptr, 1}));
    EXPECT_EQ(nullptr, gVKRAlgoPool.load());
    EXPECT_EQ(-1, vkrHdrInit(InitParam(nullptr)));
    EXPECT_EQ(-1, vkrHdrInit(InitParam("no/such/file.txt")));
    EXPECT_TRUE(lines.Contains("Can not open parameter file:no/such/file.txt"));
    EXPECT_EQ(nullptr, gVKRAlgoPool.load());
}

// Whatever the stages' own switches say: files are written by bDebugDumpEnable alone.
TEST(ApiWithoutEngine, WithoutDebugNoFileIsWritten)
{
    namespace fs = std::filesystem;
    LinesScope lines;
    const WorkFolder folder;
    for (const char* pName : {"result", "Dump", "GhostDump", "FusionDump", "ReLinearizeDump", "ClusterDump",
                              "FeatureMatchDump", "AISeg", "WeightDump", "res"}) {
        fs::create_directories(pName);
    }
    const auto files = [] {
        std::vector<std::string> vNames;
        for (const auto& entry : fs::recursive_directory_iterator(".")) {
            if (entry.is_regular_file()) vNames.push_back(entry.path().filename().string());
        }
        return vNames;
    };
    for (const int bDebug : {0, 1}) {
        const ParameterFile parameters({{"bDebugDumpEnable", bDebug},
                                        {"CMultipleImagesAlignFilter.bDumpDebug", 1},
                                        {"CGhostProcessFilter.bDumpDebug", 1},
                                        {"CLocalAutoCurveFilter.bDumpDebugFile", 1}});
        ASSERT_EQ(0, vkrHdrInit(InitParam(parameters.Path())));
        for (const int nExposureNum : {1, 3}) {
            HostPicture out(64, 48);
            for (int k = 0; k < 3; ++k) vkrHdrAddFrame(static_cast<uint32_t>(k), DrawExposure(64, 48, k, 3).Frame());
            EXPECT_EQ(0, vkrHdrRender(nExposureNum, 0, 0, 1, nullptr, out.Frame()));
        }
        EXPECT_EQ(0, vkrHdrUninit());
        const std::vector<std::string> vNames = files();
        EXPECT_EQ(bDebug != 0, !vNames.empty()) << vNames.size() << " files";
        const std::string sCurves = "LocalContrastDump\\before.bmp";
        EXPECT_EQ(bDebug != 0, std::find(vNames.begin(), vNames.end(), sCurves) != vNames.end());
    }
}

TEST(ApiWithoutEngine, ALongLineIsCutAndEnds)
{
    LinesScope lines;
    EXPECT_EQ(-1, vkrHdrInit(InitParam(std::string(2000, 'x').c_str())));
    const std::string sPath = "Can not open parameter file:";
    const size_t nAt = lines.Text().find(sPath);
    ASSERT_NE(std::string::npos, nAt);
    const std::string sLine = lines.Text().substr(nAt, lines.Text().find('\n', nAt) + 1 - nAt);
    EXPECT_EQ(sPath + std::string(511 - 4 - sPath.size(), 'x') + "...\n", sLine);
}

TEST(ApiWithoutEngine, AFileThatDoesNotParseLeavesTheEngine)
{
    LinesScope lines;
    const std::string sPath = testing::TempDir() + "vkr_broken_" + std::to_string(getpid()) + ".txt";
    std::FILE* pFile = std::fopen(sPath.c_str(), "w");
    ASSERT_NE(nullptr, pFile);
    std::fputs("\nCMultiExposureHDRProcessFlow\nnTopLevel=3;\nnoSuchName=1;\n", pFile);
    std::fclose(pFile);
    EXPECT_EQ(-1, vkrHdrInit(InitParam(sPath.c_str())));
    EXPECT_TRUE(lines.Contains("Unknown Parameter noSuchName!!!"));
    ASSERT_NE(nullptr, gVKRAlgoPool.load());
    EXPECT_EQ(3, gVKRAlgoPool.load()->nTopLevel);
    EXPECT_EQ(0, vkrHdrUninit());
    EXPECT_EQ(nullptr, gVKRAlgoPool.load());
    std::remove(sPath.c_str());
}

TEST_F(ApiTest, VersionKnowsTheConfigurationOnlyWithAnEngine)
{
    const vkrHdrVersion* pVersion = vkrHdrGetVersion();
    ASSERT_NE(nullptr, pVersion);
    EXPECT_STREQ("1.1.0.9", pVersion->pVersion);
    EXPECT_EQ(std::vector<int>({1, 1, 0, 9}), std::vector<int>(pVersion->nVersion, pVersion->nVersion + 4));
    EXPECT_STREQ("0.0.0.0", pVersion->pConfigVersion);
    EXPECT_TRUE(m_lines.Contains("cfg_version:0.0.0.0\n"));
    vkrHdrUninit();
    EXPECT_EQ(nullptr, vkrHdrGetVersion()->pConfigVersion);
}

// One thread adds frames, or renders, until there is no engine any more; another asks for the version, then ends the
// engine.
TEST_F(ApiTest, AnotherThreadAsksAndEnds)
{
    for (const bool bRender : {false, true}) {
        for (int nRound = 0; nRound < 10; ++nRound) {
            AddBurst(64, 48, 2);
            std::atomic<int> nDone{0};
            std::thread host([&] {
                HostPicture picture(64, 48);
                const auto call = [&] {
                    return bRender ? vkrHdrRender(2, 0, 0, 1, nullptr, picture.Frame())
                                   : vkrHdrAddFrame(static_cast<uint32_t>(nDone % 8), picture.Frame());
                };
                while (call() == 0) ++nDone;
            });
            while (nDone < 3) EXPECT_STREQ("0.0.0.0", vkrHdrGetVersion()->pConfigVersion);
            EXPECT_EQ(0, vkrHdrUninit());
            EXPECT_EQ(nullptr, vkrHdrGetVersion()->pConfigVersion);
            host.join();
            EXPECT_TRUE(m_lines.Contains("no engine"));
            ASSERT_EQ(0, vkrHdrInit(InitParam(m_file.Path())));
        }
    }
}

// Two engines, of which the first is left behind, as the header tells; each end closes the pool once.
TEST_F(ApiTest, InitAndUninitTwice)
{
    const std::unique_ptr<CMultiExposureHDRProcessFlowOpt> pReplaced(gVKRAlgoPool.load());
    ASSERT_EQ(0, vkrHdrInit(InitParam(m_file.Path())));
    EXPECT_NE(pReplaced.get(), gVKRAlgoPool.load());
    Fuse(16, 16, 2, 0);
    EXPECT_EQ(0, vkrHdrUninit());
    EXPECT_EQ(0, vkrHdrUninit());
    ASSERT_EQ(0, vkrHdrInit(InitParam(m_file.Path())));
    Fuse(16, 16, 2, 0);
}

TEST_F(ApiTest, RefusesBadFrames)
{
    HostPicture good(8, 8);
    ExpectFrameRefused(8, good.Frame(), "nIndex is 8");
    ExpectFrameRefused(std::numeric_limits<uint32_t>::max(), good.Frame(), "nIndex is 4294967295");
    ExpectFrameRefused(0, nullptr, "frame is null");
    for (const int nFormat : {2, -1}) {
        HostPicture bad(8, 8);
        bad.Frame()->nFormat = nFormat;
        ExpectFrameRefused(0, bad.Frame(), "unsupported image format");
    }
    for (int i = 0; i < 2; ++i) {
        HostPicture noPlane(8, 8), thin(8, 8);
        noPlane.Frame()->pPlane[i] = nullptr;
        ExpectFrameRefused(0, noPlane.Frame(), i == 0 ? "pPlane[0] is null" : "pPlane[1] is null");
        thin.Frame()->nPitch[i] = 7;
        ExpectFrameRefused(0, thin.Frame(), "less than the width 8");
    }
    for (const int nSide : {0, 1, 7, -2, 16386, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        HostPicture wide(8, 8), high(8, 8);
        wide.Frame()->nWidth = nSide;
        ExpectFrameRefused(0, wide.Frame(), "both sides must be even");
        high.Frame()->nHeight = nSide;
        ExpectFrameRefused(0, high.Frame(), "both sides must be even");
    }
    EXPECT_EQ(0, vkrHdrAddFrame(7, good.Frame()));
}

TEST_F(ApiTest, RefusesBadBurstsAndWorksOn)
{
    const std::vector<uint8_t> vBefore = Fuse(64, 48, 3, 1);
    HostPicture out(64, 48), other(64, 46), small(32, 24);
    ExpectRenderRefused(0, 0, out.Frame(), "nExposureNum is 0");
    ExpectRenderRefused(9, 0, out.Frame(), "nExposureNum is 9");
    ExpectRenderRefused(3, 3, out.Frame(), "nReferenceExposure is 3");
    ExpectRenderRefused(3, -1, out.Frame(), "nReferenceExposure is -1");
    ExpectRenderRefused(4, 1, out.Frame(), "no frame was added at index 3");
    ExpectRenderRefused(3, 1, nullptr, "frame is null");
    ExpectRenderRefused(3, 1, other.Frame(), "the output is 64x46");
    ASSERT_EQ(0, vkrHdrAddFrame(3, small.Frame()));
    ExpectRenderRefused(4, 1, out.Frame(), "frame 3 is 32x24");
    EXPECT_TRUE(out.Untouched());
    EXPECT_TRUE(other.Untouched());
    EXPECT_EQ(vBefore, Fuse(64, 48, 3, 1));
}

TEST_F(ApiTest, ABurstTooSmallToBeFusedFailsAndWritesNothing)
{
    for (const int nSide : {2, 4}) {
        AddBurst(nSide, nSide, 3);
        HostPicture out(nSide, nSide);
        ExpectRenderRefused(3, 1, out.Frame(), "too small to be fused");
        EXPECT_TRUE(out.Untouched());
    }
    Fuse(6, 6, 3, 1);
}

TEST_F(ApiTest, PitchesChangeNothing)
{
    const std::vector<uint8_t> vTight = Fuse(72, 50, 3, 1);
    EXPECT_EQ(vTight, Fuse(72, 50, 3, 1, 1));
    EXPECT_EQ(vTight, Fuse(72, 50, 3, 1, 37));
}

TEST_F(ApiTest, OneFrameComesBackAtFullSize)
{
    for (const int nSide : {2, 4, 6, 50}) Fuse(nSide, nSide, 1, 0);
}

// Nothing of a burst may run outside its pictures, whatever its even size and its number of frames: the sanitizers
// watch.
TEST_F(ApiTest, EverySmallSizeRunsToTheEnd)
{
    for (int h = 2; h <= 40; h += 2) {
        for (int w = 2; w <= 40; w += (h % 8 == 0 ? 2 : 6)) {
            const int nExposureNum = 2 + (w + h) % 7;
            AddBurst(w, h, nExposureNum);
            HostPicture out(w, h);
            const bool bFusable = w / 2 > 2 && h / 2 > 2;
            EXPECT_EQ(bFusable ? 0 : -1, vkrHdrRender(nExposureNum, (w / 2) % nExposureNum, 0, 1, nullptr, out.Frame()))
                << w << "x" << h << ", " << nExposureNum << " frames";
        }
    }
}

TEST_F(ApiTest, NoTimerStaysOpen)
{
    AddBurst(8, 8, 2);
    HostPicture out(8, 8);
    vkrHdrRender(1, 0, 0, 1, nullptr, out.Frame());  // the short ending leaves its start open
    m_lines.Text().clear();
    Toc("alone");
    EXPECT_TRUE(m_lines.Contains("     0 ms\n")) << m_lines.Text();
}

TEST_F(ApiTest, FacesMayBeNullEmptyOrMany)
{
    AddBurst(64, 48, 3);
    HostPicture none(64, 48), empty(64, 48), marked(64, 48);
    vkrHdrRect vRects[2] = {{4, 4, 40, 30}, {-1000, -1000, 1000000, 1000000}};
    const vSystemFaces noFaces{vRects, vRects, vRects}, faces{vRects, vRects + 2, vRects + 2};
    ASSERT_EQ(0, vkrHdrRender(3, 1, 0, 1, nullptr, none.Frame()));
    ASSERT_EQ(0, vkrHdrRender(3, 1, 0, 1, &noFaces, empty.Frame()));
    EXPECT_EQ(none.Pixels(), empty.Pixels());
    ASSERT_EQ(0, vkrHdrRender(3, 1, 0, 3, &faces, marked.Frame()));  // 3 draws the host's boxes
    EXPECT_NE(none.Pixels(), marked.Pixels());
}

}  // namespace
}  // namespace vkr
