#include "fusion/pyramid_fusion.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "fusion/reference_fusion.h"
#include "support/for_threads.h"
#include "support/pyramid_with.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {

namespace {

// Frames with texture, weights that sum to about 128, coefficients for every second level.
struct FusionBurst {
    FusionBurst(int w, int h, int n, const PyramidParams& pyramidParams, int nSeed = 16)
        : nExposureNum(n), pyramid(pyramidParams)
    {
        std::mt19937 rng(nSeed);
        for (int k = 0; k < n; ++k) FillRandom(rng, vFrames[k], w, h, 3, 0, 255);
        FillRandom(rng, vWeights[0], w, h, n, 0, 255 / n);
        for (int i = 0; i + 1 < kMaxLevels && vWeights[i].nWidth > 1 << pyramid.nTopLevel; ++i) {
            EXPECT_TRUE(HalveImage(vWeights[i], vWeights[i + 1], false, false));
        }
        for (int i = 0; i < 6 && !vWeights[i].Empty(); i += 2) {
            FillRandom(rng, vCoefs[i], vWeights[i].nWidth, vWeights[i].nHeight, n, 0, 400);
        }
    }
    ~FusionBurst()
    {
        for (CImage& frame : vFrames) frame.Release();
        for (CImage& level : vWeights) level.Release();
        for (CShortImage& level : vCoefs) level.Release();
    }
    bool Fuse(CShortImage& fused, int bDump = 0) const
    {
        return PyramidFusion({vFrames, nExposureNum, vWeights, vCoefs}, params, pyramid, bDump, fused);
    }
    std::vector<int16_t> Reference() const
    {
        return ReferenceFusion(vFrames, vWeights, vCoefs, nExposureNum, params, pyramid).m_vResult;
    }
    int nExposureNum;
    PyramidParams pyramid;
    FusionParams params;
    CImage vFrames[kMaxExposures] = {}, vWeights[kMaxLevels] = {};
    CShortImage vCoefs[kMaxLevels] = {};
};

void ExpectReference(const FusionBurst& burst)
{
    const auto vWant = burst.Reference();
    TestShortImage fused;
    ASSERT_TRUE(burst.Fuse(fused));
    if (vWant.empty()) {
        EXPECT_TRUE(fused.Empty());
        return;
    }
    EXPECT_EQ(6, fused.nDim);
    EXPECT_EQ(burst.vFrames[0].nWidth, fused.nWidth);
    EXPECT_EQ(burst.vFrames[0].nHeight, fused.nHeight);
    ASSERT_EQ(vWant, Samples(fused));
}

}  // namespace

TEST(PyramidFusion, EqualsASecondWritingAtEverySize)
{
    const int vSizes[][2] = {{1, 1}, {2, 2}, {3, 3}, {4, 3}, {3, 9}, {5, 4}, {17, 23}, {40, 30}, {257, 6}, {70, 51}};
    LinesScope quiet;
    for (const auto& size : vSizes) {
        for (int nForm = 0; nForm < 4; ++nForm) {
            for (const int nTopLevel : {0, 1, 3}) {
                SCOPED_TRACE(testing::Message()
                             << size[0] << " x " << size[1] << ", form " << nForm << ", top level " << nTopLevel);
                ExpectReference(FusionBurst(size[0], size[1], 3, PyramidWith(nTopLevel, nForm & 1, nForm >> 1)));
            }
        }
    }
}

TEST(PyramidFusion, EqualsASecondWritingForAnyExposures)
{
    LinesScope quiet;
    for (int n = 1; n <= kMaxExposures; ++n) {
        SCOPED_TRACE(n);
        FusionBurst burst(45, 34, n, PyramidWith(1));
        ExpectReference(burst);
        burst.params.bExtendHL = 0;
        burst.params.nMinDeghostLevel = 2;
        burst.params.bShadowDetailEnhanceEnable = 0;
        ExpectReference(burst);
        std::fill_n(burst.params.nExtendHLSatuThre, 8, 0);
        std::fill_n(burst.params.nExtendHLSlope, 8, 1024);
        std::fill_n(burst.params.nSharpenYWList, 8, 128);
        burst.params.bExtendHL = burst.params.bShadowDetailEnhanceEnable = 1;
        burst.params.nMaxDeghostLevel = 1;  // below the least: no compensation
        ExpectReference(burst);
    }
}

TEST(PyramidFusion, GivesTheSameBytesFromAnyTeam)
{
    LinesScope quiet;
    for (const int n : {3, 5}) {
        const FusionBurst burst(301, 103, n, PyramidWith(1));
        const auto vWant = burst.Reference();
        ForThreads([&](int nThreads) {
            SCOPED_TRACE(nThreads);
            TestShortImage fused;
            ASSERT_TRUE(burst.Fuse(fused));
            ASSERT_EQ(vWant, Samples(fused));
        });
    }
}

// Exposures that agree are their own blend: both parts add up to the picture, but for what the doublings down the
// levels drop.
TEST(PyramidFusion, EqualFramesGiveTheirPicture)
{
    LinesScope quiet;
    FusionBurst burst(60, 44, 3, PyramidWith(1));
    burst.params.bShadowDetailEnhanceEnable = burst.params.bEdgeCompensateEnable = 0;
    for (int k : {1, 2}) ASSERT_TRUE(burst.vFrames[k].CopyFrom(burst.vFrames[0]));
    TestShortImage fused;
    ASSERT_TRUE(burst.Fuse(fused));
    for (size_t i = 0; i < burst.vFrames[0].Samples(); ++i) {
        const int16_t* pPixel = fused.pData + i / 3 * 6;
        ASSERT_EQ(burst.vFrames[0].pData[i], pPixel[i % 3] + pPixel[3 + i % 3]);
    }
}

TEST(PyramidFusion, LeavesTheResultAloneWhereLevel0IsTheTop)
{
    LinesScope quiet;
    const FusionBurst burst(40, 2, 3, PyramidWith(1));
    TestShortImage fused;
    FillConstant(fused, 3, 3, 6, 7);
    ASSERT_TRUE(burst.Fuse(fused));
    EXPECT_EQ(std::vector<int16_t>(54, 7), Samples(fused));
    EXPECT_TRUE(quiet.Contains("Build Pyramid: Level0 size=[40x2]\n\n"));
    EXPECT_TRUE(quiet.Contains("PyramidLevel=1\n"));
    EXPECT_TRUE(quiet.Contains(" FusionPyramid: Level0 size=[40X2]\n "));
}

TEST(PyramidFusion, RefusesLevelsThatDoNotFitAndLeavesTheResultAlone)
{
    LinesScope quiet;
    TestShortImage fused;
    for (int nFault = 0; nFault < 6; ++nFault) {
        SCOPED_TRACE(nFault);
        FusionBurst burst(40, 30, 3, PyramidWith(1));
        if (nFault == 0) burst.vWeights[2].Release();
        if (nFault == 1) FillConstant(burst.vWeights[4], 2, 2, 3, 9);  // the top level, 3 x 2 is right
        if (nFault == 2) FillConstant(burst.vWeights[0], 40, 30, 2, 9);
        if (nFault == 3) FillConstant(burst.vFrames[1], 40, 29, 3, 9);
        if (nFault == 4) burst.vFrames[2].Release();
        if (nFault == 5) burst.nExposureNum = 9;
        EXPECT_FALSE(burst.Fuse(fused));
        EXPECT_TRUE(fused.Empty());
    }
}

TEST(PyramidFusion, CoefficientsOfAnotherShapeChangeNothing)
{
    LinesScope quiet;
    FusionBurst burst(40, 30, 3, PyramidWith(1));
    TestShortImage want, fused;
    for (CShortImage& level : burst.vCoefs) level.Release();
    ASSERT_TRUE(burst.Fuse(want));
    FillConstant(burst.vCoefs[0], 40, 30, 2, 64);
    FillConstant(burst.vCoefs[1], 20, 14, 3, 64);
    ASSERT_TRUE(burst.Fuse(fused));
    EXPECT_EQ(Samples(want), Samples(fused));
}

TEST(PyramidFusion, DumpsEveryFusedLevel)
{
    LinesScope quiet;
    char szBefore[4096];
    std::string sFolder = testing::TempDir() + "fusion_dump_XXXXXX";
    ASSERT_NE(nullptr, getcwd(szBefore, sizeof(szBefore)));
    ASSERT_NE(nullptr, mkdtemp(sFolder.data()));
    ASSERT_EQ(0, chdir(sFolder.c_str()));
    const FusionBurst burst(40, 30, 3, PyramidWith(1));
    TestShortImage fused;
    ASSERT_TRUE(burst.Fuse(fused, 1));  // no folder: nothing written, nothing amiss
    ASSERT_EQ(0, mkdir("FusionDump", 0700));
    ASSERT_TRUE(burst.Fuse(fused, 1));
    for (const char* pName : {"Fusion_0", "Fusion_US_0", "Fusion_3", "Fusion_US_3", "Fusion_4"}) {
        struct stat status;
        const std::string sPath = std::string("FusionDump/") + pName + ".bmp";
        EXPECT_EQ(0, stat(sPath.c_str(), &status)) << sPath;
        EXPECT_GT(status.st_size, 54);
    }
    EXPECT_NE(0, access("FusionDump/Fusion_US_4.bmp", F_OK));  // nothing is doubled onto the top level
    EXPECT_EQ(0, chdir(szBefore));
    const int nDone = std::system(("rm -r '" + sFolder + "'").c_str());
    EXPECT_EQ(0, nDone);
}

}  // namespace vkr
