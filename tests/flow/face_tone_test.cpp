#include <gtest/gtest.h>

#include <algorithm>

#include "flow/engine_burst.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

constexpr int kWidth = 160, kHeight = 120;
const FaceBox kFace = {20, 20, 110, 100};  // frame pixels

// A burst with skin in the place of the face: red stands out in every exposure.
std::unique_ptr<CMultiExposureHDRProcessFlowOpt> EngineWithFace()
{
    auto pEngine = EngineWithBurst(kWidth, kHeight, 3);
    pEngine->bAIMask = 1;
    pEngine->nAIFaceHeightWidthThres = 20;
    pEngine->nBrightDarkFaceThres = 1000;
    for (int k = 0; k < 3; ++k) {
        for (int y = kFace.y1 / 2; y < kFace.y2 / 2; ++y) {
            for (int x = kFace.x1; x < kFace.x2; x += 2) {
                pEngine->m_YuvFrames[k].RowUV(y)[x] = 112;
                pEngine->m_YuvFrames[k].RowUV(y)[x + 1] = 156;
            }
        }
    }
    // One weight for every brightness: nothing but the tone decides.
    std::fill(pEngine->pBrightnessWList, pEngine->pBrightnessWList + 8, 64);
    std::fill(pEngine->pBrightnessWListRef, pEngine->pBrightnessWListRef + 8, 64);
    return pEngine;
}

std::vector<uint8_t> FuseFace(CMultiExposureHDRProcessFlowOpt& engine, const FaceBox& face)
{
    return Fuse(engine, 3, 1, {&face, 1});
}

TEST(FaceTone, EveryWayGivesItsOwnPictureFromAnyTeam)
{
    LinesScope lines;
    std::vector<std::vector<uint8_t>> vResults;
    for (int i = 0; i < 6; ++i) {
        ForThreads([&](int nThreads) {
            const auto pEngine = EngineWithFace();
            pEngine->bAIMask = i > 0;
            pEngine->bHSVStretch = i >= 4;
            pEngine->bHSVTone = i >= 2;
            pEngine->bHSVToneFace = i == 3;
            pEngine->bHSP2PTone = i == 5;
            pEngine->bContrastEnable = 0;
            const auto vPixels = FuseFace(*pEngine, kFace);
            ASSERT_FALSE(vPixels.empty()) << i;
            if (nThreads == 1) {
                EXPECT_EQ(std::count(vResults.begin(), vResults.end(), vPixels), 0) << i;
                vResults.push_back(vPixels);
            }
            EXPECT_EQ(vPixels, vResults.back()) << i << ", " << nThreads;
        });
    }
}

// A box far beyond the picture, and pictures whose debug folders do not exist.
TEST(FaceTone, ServesAnyBox)
{
    LinesScope lines;
    const int32_t nFar = INT32_MAX;
    for (const FaceBox& box : {FaceBox{-nFar, -nFar, nFar, nFar}, FaceBox{nFar - 400, 0, nFar, 9}, {0, -nFar, 90, 0}}) {
        for (int i = 0; i < 3; ++i) {
            const auto pEngine = EngineWithFace();
            pEngine->bHSVStretch = i == 0;
            pEngine->bHSVTone = 1;
            pEngine->bHSVToneFace = i == 1;
            pEngine->bHSP2PTone = 0;
            pEngine->bDebugDumpEnable = 1;
            EXPECT_FALSE(FuseFace(*pEngine, box).empty());
        }
    }
}

// The mark of a face of too wide a spread stays: the tone is the global one from then on, the aim is the face's still.
TEST(FaceTone, ABrightDarkFaceTurnsItOffForLaterBursts)
{
    LinesScope lines;
    const auto pEngine = EngineWithFace();
    pEngine->nBrightDarkFaceThres = 0;
    ASSERT_FALSE(FuseFace(*pEngine, kFace).empty());
    EXPECT_EQ(pEngine->m_bBrightDarkFace, 1);
    EXPECT_FALSE(lines.Contains("Fusion Face"));
    pEngine->nBrightDarkFaceThres = 1000;
    LinesScope::Text().clear();
    ASSERT_FALSE(FuseFace(*pEngine, kFace).empty());
    EXPECT_TRUE(lines.Contains("m_FaceIntensity " + std::to_string(pEngine->m_FaceIntensity) + "\n"));
    EXPECT_TRUE(lines.Contains("scale = "));
    EXPECT_FALSE(lines.Contains("Fusion Face"));
    EXPECT_EQ(pEngine->bAIMask, 1);
}

}  // namespace
}  // namespace vkr
