#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>

#include "flow/engine_burst.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

double MeanLuma(const std::vector<uint8_t>& vPixels, int w, int h)
{
    return std::accumulate(vPixels.begin(), vPixels.begin() + w * h, 0.0) / (w * h);
}

TEST(FusionPath, TheSameBurstGivesTheSameBytesFromRunToRun)
{
    LinesScope lines;
    ForThreads([](int) {
        const auto vFirst = Fuse(*EngineWithBurst(118, 90, 3), 3, 1);
        ASSERT_FALSE(vFirst.empty());
        for (int i = 0; i < 3; ++i) EXPECT_EQ(vFirst, Fuse(*EngineWithBurst(118, 90, 3), 3, 1));
    });
}

// With every switch of every filter drawn at random: no carry, sum or order of any stage follows the team.
TEST(FusionPath, TheTeamChangesNothing)
{
    LinesScope lines;
    std::vector<std::vector<uint8_t>> vOneThread;
    ForThreads(
        [&](int nThreads) {
            for (int nRun = 0; nRun < 10; ++nRun) {
                const int nExposureNum = 2 + nRun % 4;
                const auto pEngine = EngineWithShakenBurst(270 - 14 * nRun, 140 + 6 * nRun, nExposureNum);
                std::mt19937 rng(static_cast<unsigned>(nRun));
                ForParameters(*pEngine, [&](ParamEntry& entry) {
                    const int32_t nDrawn = static_cast<int32_t>(rng() & 1);
                    if (entry.nMin == 0 && entry.nMax == 1) *entry.pValue = nDrawn;
                });
                pEngine->nGlobalAlignEnable = pEngine->bGhostProcessEnable = 1;
                const FaceBox face = {20, 30, 100, 120};
                const auto vPixels = Fuse(*pEngine, nExposureNum, nRun % nExposureNum, {&face, nRun % 3 > 0});
                ASSERT_FALSE(vPixels.empty()) << nRun;
                if (nThreads == 1) vOneThread.push_back(vPixels);
                EXPECT_TRUE(vOneThread[static_cast<size_t>(nRun)] == vPixels) << "run " << nRun << ", " << nThreads;
            }
        },
        kManyTeams);
}

TEST(FusionPath, BringsBothHalvesOfTheSceneIntoView)
{
    LinesScope lines;
    constexpr int w = 192, h = 128;
    const auto vPixels = Fuse(*EngineWithBurst(w, h, 3), 3, 1);
    ASSERT_FALSE(vPixels.empty());
    auto levels = [&](int nBegin, int nEnd) {  // grey values that occur in columns nBegin .. nEnd - 1
        std::vector<int> vSeen(256);
        for (int y = 0; y < h; ++y) {
            for (int x = nBegin; x < nEnd; ++x) vSeen[vPixels[y * w + x]] = 1;
        }
        return std::accumulate(vSeen.begin(), vSeen.end(), 0);
    };
    EXPECT_GT(levels(0, w / 2 - 8), 24);  // the reference alone has the dark half in 10 to 20 levels
    EXPECT_GT(levels(w / 2 + 8, w), 24);
    EXPECT_GT(MeanLuma(vPixels, w, h), 60);
    EXPECT_LT(MeanLuma(vPixels, w, h), 190);
}

TEST(FusionPath, FramesOfOneGreyValueGiveAFlatPicture)
{
    LinesScope lines;
    for (const int nGrey : {0, 16, 128, 235, 255}) {
        auto pEngine = EngineWithBurst(80, 60, 3);
        for (int k = 0; k < 3; ++k) {
            CYuvImage& slot = pEngine->m_YuvFrames[k];
            std::fill(slot.pY, slot.pUV, static_cast<uint8_t>(nGrey));
            std::fill(slot.pUV, slot.pUV + 80 * 60 / 2, uint8_t{128});
        }
        const auto vPixels = Fuse(*pEngine, 3, 1);
        ASSERT_EQ(80u * 60 * 3 / 2, vPixels.size());
        const auto [pLow, pHigh] = std::minmax_element(vPixels.begin(), vPixels.begin() + 80 * 60);
        EXPECT_LE(*pHigh - *pLow, 3) << nGrey;  // diffused roundings of the stretch and the local curve
        const auto [pLowUv, pHighUv] = std::minmax_element(vPixels.begin() + 80 * 60, vPixels.end());
        EXPECT_GE(*pLowUv, 127);
        EXPECT_LE(*pHighUv, 129);
    }
}

TEST(FusionPath, OneFrameIsTheReferenceWithItsLocalCurve)
{
    LinesScope lines;
    auto pEngine = EngineWithBurst(64, 48, 1);
    pEngine->bContrastEnable = 0;
    const auto vSource = Samples(pEngine->m_YuvFrames[0]);
    const auto vPlain = Fuse(*pEngine, 1, 0);
    ASSERT_EQ(vSource.size(), vPlain.size());
    for (size_t i = 0; i < 64u * 48; ++i) {  // two colour conversions; tinted highlights lose what the clip takes
        if (vSource[i] >= 220) continue;
        ASSERT_NEAR(vSource[i], vPlain[i], 3) << i;
    }
    pEngine->bContrastEnable = 1;
    EXPECT_NE(vPlain, Fuse(*pEngine, 1, 0));
    EXPECT_FALSE(lines.Contains("HDR  Process Done"));  // the short ending has no such line
}

TEST(FusionPath, StagesReportInTheirOrder)
{
    LinesScope lines;
    Fuse(*EngineWithBurst(64, 48, 3), 3, 1);
    size_t nAt = 0;
    for (const char* pLine : {"==== ==== AlignImages Done", "==================index ", "==== ==== Binarize Done",
                              "==== ==== GenerateSatuMask Done", "====AI1", "==== ==== DetectGhost Done",
                              "==== ==== BuildWeight Done", "==== ==== GhostEmbeddingIntoWeight Done", "PyramidLevel=",
                              "==== ==== PyramidFusion Done", "InMean=", "Apply Local Curves!", "==== ==== BGR2YCbCr",
                              "==== ==== UpScaleImage AddEdge Done", "====@@@@@ HDR  Process Done"}) {
        const size_t nFound = lines.Text().find(pLine, nAt);
        EXPECT_NE(std::string::npos, nFound) << pLine;
        if (nFound != std::string::npos) nAt = nFound;
    }
}

TEST(FusionPath, EightExposuresFuse)
{
    LinesScope lines;
    const auto vPixels = Fuse(*EngineWithBurst(96, 64, 8), 8, 4);
    ASSERT_FALSE(vPixels.empty());
    EXPECT_GT(MeanLuma(vPixels, 96, 64), 60);
}

TEST(FusionPath, TheLevelsFollowOverASeriesOfBursts)
{
    LinesScope lines;
    auto pEngine = EngineWithBurst(96, 64, 3);
    pEngine->nLowLevelStep = pEngine->nHighLevelStep = 4;
    Fuse(*pEngine, 3, 1);
    const int nFirst = pEngine->m_nHighLevel;
    Fuse(*pEngine, 3, 1);
    const int nSecond = pEngine->m_nHighLevel;
    auto pJump = EngineWithBurst(96, 64, 3);
    Fuse(*pJump, 3, 1);
    ASSERT_NE(255, pJump->m_nHighLevel);
    EXPECT_LT(std::abs(pJump->m_nHighLevel - nSecond), std::abs(pJump->m_nHighLevel - nFirst));
    EXPECT_LT(std::abs(pJump->m_nHighLevel - nFirst), std::abs(pJump->m_nHighLevel - 255));
}

}  // namespace
}  // namespace vkr
