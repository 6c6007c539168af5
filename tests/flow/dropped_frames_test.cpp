#include <gtest/gtest.h>

#include "engine_burst.h"
#include "support/quiet_lines.h"
#include "support/rectangle_scene.h"

namespace vkr {
namespace {

constexpr int kW = 320, kH = 256;
constexpr double kGains[5] = {0.3, 0.55, 1.0, 1.3, 1.6};

// Exposures of one scene; those of the mask nForeign show another one, which nothing can be matched with.
void FillSlots(CMultiExposureHDRProcessFlowOpt& engine, int nExposureNum, unsigned nForeign, int nFirst = 0)
{
    const RectangleScene scene(5), foreign(77);
    for (int k = 0; k < nExposureNum; ++k) {
        const bool bForeign = (nForeign >> k & 1) != 0;
        (bForeign ? foreign : scene).Cut(60, 60, kW, kH, kGains[nFirst + k], engine.m_YuvFrames[k]);
    }
}

std::unique_ptr<CMultiExposureHDRProcessFlowOpt> DroppingEngine()
{
    auto pEngine = EngineWithBurst(kW, kH, 0);
    pEngine->m_AlignFilter.bDropAlignFail = 1;
    pEngine->m_AlignFilter.nFeatureMatchLevel = 2;
    pEngine->m_AlignFilter.nMinFeatureNum = 8;
    return pEngine;
}

// What is left of a burst fuses like a burst of just these frames, whichever end was dropped and whatever came before.
TEST(DroppedFrames, TheRestFusesAsABurstOfItsOwn)
{
    struct Case {
        unsigned nForeign;   // frames of another scene
        int nFirst, nCount;  // what should be left, around reference 2
    };
    const LinesScope lines;
    auto pEngine = DroppingEngine();  // one engine for all: two drops of either kind follow each other
    for (const Case& c : {Case{0b10000, 0, 4}, Case{0b11000, 0, 3}, Case{0b00001, 1, 4}, Case{0b00011, 2, 3},
                          Case{0b00001, 1, 4}, Case{0b10000, 0, 4}}) {
        FillSlots(*pEngine, 5, c.nForeign);
        const auto vDropped = Fuse(*pEngine, 5, 2);
        ASSERT_FALSE(vDropped.empty());

        auto pFresh = DroppingEngine();
        std::copy_n(pFresh->nGoodBrightnessTargetDropFailure, c.nCount, pFresh->nGoodBrightnessTarget);
        FillSlots(*pFresh, c.nCount, 0, c.nFirst);
        EXPECT_EQ(Fuse(*pFresh, c.nCount, 2 - c.nFirst), vDropped) << c.nForeign;
    }
}

// Frames at both ends: both are given back, with a line each.
TEST(DroppedFrames, BothEndsMayGo)
{
    LinesScope lines;
    auto pEngine = DroppingEngine();
    FillSlots(*pEngine, 5, 0b10001);
    pEngine->bDebugDumpEnable = 1;
    const auto vDropped = Fuse(*pEngine, 5, 2);
    const std::string sLine = "!!!!!!!!Using Image 2th to 4th Only!!!!!!!!!!!\n", &sText = lines.Text();
    const size_t nFirst = sText.find(sLine);
    ASSERT_NE(std::string::npos, nFirst);
    EXPECT_NE(std::string::npos, sText.find(sLine, nFirst + 1));
    for (int k = 0; k < 5; ++k) EXPECT_EQ(k == 0 || k == 4, pEngine->m_YuvFrames[k].pBuffer == nullptr) << k;

    auto pFresh = DroppingEngine();
    std::copy_n(pFresh->nGoodBrightnessTargetDropFailure, 3, pFresh->nGoodBrightnessTarget);
    FillSlots(*pFresh, 3, 0, 1);
    EXPECT_EQ(Fuse(*pFresh, 3, 1), vDropped);
}

// With nothing but the reference left its own picture comes out.
TEST(DroppedFrames, AloneTheReferenceIsFinishedByItself)
{
    const LinesScope lines;
    auto pEngine = DroppingEngine();
    for (int i = 0; i < 2; ++i) {
        FillSlots(*pEngine, 3, 0b101);
        const auto vAlone = Fuse(*pEngine, 3, 1);
        auto pFresh = DroppingEngine();
        FillSlots(*pFresh, 1, 0, 1);
        EXPECT_EQ(Fuse(*pFresh, 1, 0), vAlone);
    }
}

}  // namespace
}  // namespace vkr
