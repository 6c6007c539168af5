#include <gtest/gtest.h>

#include <string>

#include "flow/engine_burst.h"
#include "support/quiet_lines.h"
#include "support/work_folder.h"

namespace vkr {
namespace {

// Renders one burst after the other on one engine with the host's faces.
class FaceStateTest : public testing::Test {
protected:
    FaceStateTest() : m_pEngine(EngineWithBurst(256, 192, 2))
    {
        m_pEngine->nGlobalAlignEnable = 0;
        m_pEngine->nAIFaceHeightWidthThres = 40;
        m_pEngine->bAIMask = 1;
    }
    bool Render(const std::vector<FaceBox>& vFaces, int nFaceSource = 1, int nOrientation = 0)
    {
        TestYuvImage output;
        LinesScope::Text().clear();
        return m_pEngine->ProcessImage(2, 1, HostFaces{vFaces.data(), static_cast<int>(vFaces.size())}, nOrientation,
                                       nFaceSource, output);
    }
    WorkFolder m_Folder;  // without a model
    LinesScope m_Lines;
    std::unique_ptr<CMultiExposureHDRProcessFlowOpt> m_pEngine;
};

const FaceBox kSmall{20, 20, 101, 101}, kLarge{40, 30, 180, 170};

TEST_F(FaceStateTest, AFaceKeepsTheSearchOn)
{
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(Render({kSmall, kLarge}));
        EXPECT_EQ(1, m_pEngine->bAIMask);
    }
}

TEST_F(FaceStateTest, ABurstWithoutAFaceSwitchesItOffForGood)
{
    const std::vector<std::vector<FaceBox>> vFaceless{{}, {kSmall}, {{-300, -300, 1, 1}}};
    for (const std::vector<FaceBox>& vFaces : vFaceless) {
        m_pEngine->bAIMask = 1;
        ASSERT_TRUE(Render(vFaces));
        EXPECT_EQ(0, m_pEngine->bAIMask) << vFaces.size();
        ASSERT_TRUE(Render({kLarge}));
        EXPECT_EQ(0, m_pEngine->bAIMask);
        ASSERT_TRUE(Render({}, 0));  // the network would end the process
    }
}

TEST_F(FaceStateTest, ANetworkSearchWithoutAModelEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(Render({}, 0), testing::ExitedWithCode(1), "Error at tfutils.cpp:87\n$");
}

}  // namespace
}  // namespace vkr
