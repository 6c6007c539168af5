#include <gtest/gtest.h>
#include <unistd.h>

#include <random>
#include <string>

#include "flow/engine_burst.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

// Whatever is inside the ranges must run to its end inside its pictures: the sanitizers watch.
TEST(ParameterRanges, EveryParameterAtItsBoundsRuns)
{
    LinesScope lines;
    for (const bool bHigh : {false, true}) {
        for (const int nExposureNum : {1, 2, 3, 4}) {
            auto pEngine = EngineWithBurst(54, 42, nExposureNum);
            ForParameters(*pEngine, [&](ParamEntry& entry) { *entry.pValue = bHigh ? entry.nMax : entry.nMin; });
            pEngine->m_AlignFilter.bDropAlignFail = 0;       // else the reference is left alone and needs no pyramid
            const bool bFits = !bHigh || nExposureNum == 1;  // a top level of 1024 pixels leaves nothing to fuse
            EXPECT_EQ(bFits, !Fuse(*pEngine, nExposureNum, 0).empty()) << bHigh << ", " << nExposureNum << " frames";
        }
    }
}

TEST(ParameterRanges, RandomSettingsRunOnRandomPictures)
{
    LinesScope lines;
    std::mt19937 rng(2024);
    for (int nRun = 0; nRun < 60; ++nRun) {
        const int w = 2 * (3 + static_cast<int>(rng() % 40)), h = 2 * (3 + static_cast<int>(rng() % 40));
        const int nExposureNum = 1 + static_cast<int>(rng() % 8);
        auto pEngine = EngineWithBurst(w, h, nExposureNum);
        ForParameters(*pEngine, [&](ParamEntry& entry) {
            const int64_t nSpan = int64_t{entry.nMax} - entry.nMin + 1;
            *entry.pValue = static_cast<int32_t>(entry.nMin + static_cast<int64_t>(rng()) % nSpan);
        });
        pEngine->nTopLevel = static_cast<int32_t>(rng() % 3);
        pEngine->nAIFaceHeightWidthThres = static_cast<int32_t>(rng() % 16);
        const FaceBox face = {static_cast<int32_t>(rng() % 50) - 20, -8, static_cast<int32_t>(rng() % 200), 60};
        if (nRun % 2 == 0) {
            for (int k = 0; k < nExposureNum; ++k) {
                CYuvImage& slot = pEngine->m_YuvFrames[k];
                for (int i = 0; i < w * h * 3 / 2; ++i) slot.pBuffer[i] = static_cast<uint8_t>(rng());
            }
        }
        SCOPED_TRACE(testing::Message() << "run " << nRun << ": " << w << "x" << h << ", " << nExposureNum);
        const auto vPixels = Fuse(*pEngine, nExposureNum, static_cast<int>(rng() % nExposureNum), {&face, 1});
        const int nTop = 1 << pEngine->nTopLevel;
        const bool bFits = nExposureNum == 1 || (w / 2 > nTop && h / 2 > nTop);
        const bool bMayBeAlone = pEngine->m_AlignFilter.bDropAlignFail != 0;
        if (!bFits && bMayBeAlone && vPixels.empty()) continue;
        EXPECT_EQ(bFits || bMayBeAlone ? static_cast<size_t>(w * h * 3 / 2) : 0u, vPixels.size());
    }
}

TEST(ParameterText, HoldsEverySectionInTheOrderOfConstruction)
{
    CMultiExposureHDRProcessFlowOpt engine;
    const std::string sPath = testing::TempDir() + "vkr_text_" + std::to_string(getpid()) + ".txt";
    ASSERT_TRUE(engine.SaveParameterFile(sPath.c_str()));
    std::FILE* pFile = std::fopen(sPath.c_str(), "r");
    ASSERT_NE(nullptr, pFile);
    std::string sText(1 << 16, '\0');
    sText.resize(std::fread(&sText[0], 1, sText.size(), pFile));
    std::fclose(pFile);

    size_t nAt = 0;
    for (const char* pLine :
         {"\nCMultiExposureHDRProcessFlow\nbDebugDumpEnable=0;\trange=[0,1]\nbLogoEnable=1;\trange=[0,1]\n",
          "nGoodBrightnessTarget_2=80;\trange=[0,255]\n", "nMinLowLevel=-32;\trange=[-255,255]\n",
          "bUpScaleOtherDither=0;\trange=[0,1]\n\nCMultipleImagesAlignFilter\nbDumpDebug=1;", "nRANSACPsThre_1=95;",
          "\n\nCFeaturePointDetection\nnPtThre1=2;", "\n\nCHomographMappingFilter\nbBicubicEnable=1;",
          "\n\nCGhostProcessFilter\nbDumpDebug=0;", "nGhostThre_0_0=32;\trange=[0,255]\nnGhostThre_0_1=64;",
          "nGhostThre_7_2=96;", "\n\nCLocalAutoCurveFilter\nbDumpDebugFile=1;"}) {
        const size_t nFound = sText.find(pLine, nAt);
        ASSERT_NE(std::string::npos, nFound) << pLine;
        nAt = nFound;
    }

    // Loading it moves every parameter to what the file says, but not those of the filters that alignment runs with.
    LinesScope lines;
    CMultiExposureHDRProcessFlowOpt other;
    ForParameters(other, [](ParamEntry& entry) { *entry.pValue = entry.nMin; });
    ASSERT_TRUE(other.LoadParameterFile(sPath.c_str())) << lines.Text();
    std::vector<int> vWant, vGot;
    ForParameters(engine, [&](ParamEntry& entry) { vWant.push_back(*entry.pValue); });
    ForParameters(other, [&](ParamEntry& entry) { vGot.push_back(*entry.pValue); });
    EXPECT_EQ(vWant, vGot);
    EXPECT_GT(vWant.size(), 300u);
    std::remove(sPath.c_str());
}

}  // namespace
}  // namespace vkr
