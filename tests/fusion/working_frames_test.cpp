#include "fusion/working_frames.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "foundation/colour.h"
#include "primitives/gaussian_pyramid.h"
#include "primitives/pyramid_levels.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {

namespace {

struct Binarized {
    explicit Binarized(const TestYuvImage* vFrames, int nExposureNum, int bUVOrder = 0)
    {
        flags.Reset();
        bDone = BinarizeFrames(vFrames, nExposureNum, bUVOrder, flags, vWork, vDetail);
    }
    ~Binarized()
    {
        for (CImage& work : vWork) work.Release();
        for (CShortImage& detail : vDetail) detail.Release();
    }
    LinesScope lines;
    ReadyFlags flags;
    bool bDone = false;
    CImage vWork[kMaxExposures] = {};
    CShortImage vDetail[kMaxExposures] = {};
};

void FillFrame(std::mt19937& rng, TestYuvImage& frame, int w, int h)
{
    ASSERT_TRUE(frame.Allocate(w, h));
    for (int i = 0; i < w * h / 2 * 3; ++i) frame.pBuffer[i] = static_cast<uint8_t>(rng());
}

void HalveLuma(const CYuvImage& frame, CImage& halved)
{
    ASSERT_TRUE(halved.AllocateGray(frame.nWidth / 2, frame.nHeight / 2));
    ASSERT_TRUE(CGaussianPyramid2::DownScaleImageFast(frame.pY, halved.pData, frame.nWidth, frame.nHeight, 1));
}

}  // namespace

TEST(BinarizeFrames, DetailAndDoubledHalvedLumaGiveTheLuma)
{
    std::mt19937 rng(8);
    const int vSizes[][2] = {{2, 2}, {2, 6}, {6, 4}, {34, 18}, {70, 46}};
    for (const auto& size : vSizes) {
        SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1]);
        TestYuvImage frame;
        FillFrame(rng, frame, size[0], size[1]);
        Binarized result(&frame, 1);
        ASSERT_TRUE(result.bDone);
        TestImage halved, doubled;
        HalveLuma(frame, halved);
        ASSERT_TRUE(DoubleImage(halved, doubled, false, false));
        const CShortImage& detail = result.vDetail[0];
        ASSERT_EQ(doubled.Samples(), detail.Samples());
        EXPECT_EQ(1, detail.nDim);
        for (size_t i = 0; i < detail.Samples(); ++i) ASSERT_EQ(frame.pY[i], detail.pData[i] + doubled.pData[i]);
    }
}

TEST(BinarizeFrames, WorkingFrameJoinsHalvedLumaAndChromaAsItStands)
{
    std::mt19937 rng(9);
    TestYuvImage frame;
    FillFrame(rng, frame, 2 * 300, 10);  // wider than one run
    for (const int bUVOrder : {0, 1}) {
        Binarized result(&frame, 1, bUVOrder);
        TestImage halved, want;
        HalveLuma(frame, halved);
        ASSERT_TRUE(want.Allocate(300, 5));
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < 300; ++x) {
                want.Row(y)[3 * x] = halved.Row(y)[x];
                want.Row(y)[3 * x + 1] = frame.RowUV(y)[2 * x];
                want.Row(y)[3 * x + 2] = frame.RowUV(y)[2 * x + 1];
            }
        }
        YCbCrToBGR(want, bUVOrder);
        EXPECT_EQ(Samples(want), Samples(result.vWork[0]));
    }
}

TEST(BinarizeFrames, GivesTheSameBytesFromAnyTeamAndTellsEveryExposure)
{
    std::mt19937 rng(10);
    TestYuvImage vFrames[kMaxExposures];
    for (int k = 0; k < kMaxExposures; ++k) FillFrame(rng, vFrames[k], 36, 22);
    for (int nExposureNum = 1; nExposureNum <= kMaxExposures; nExposureNum += 3) {
        ThreadsScope one(1);
        const Binarized want(vFrames, nExposureNum);
        ForThreads([&](int nThreads) {
            SCOPED_TRACE(testing::Message() << nExposureNum << " exposures, " << nThreads << " threads");
            Binarized result(vFrames, nExposureNum);
            EXPECT_TRUE(result.bDone);
            for (int k = 0; k < nExposureNum; ++k) {
                EXPECT_EQ(Samples(want.vWork[k]), Samples(result.vWork[k]));
                EXPECT_EQ(Samples(want.vDetail[k]), Samples(result.vDetail[k]));
                EXPECT_EQ(k, result.flags.TakeReady(kMaxExposures));
                EXPECT_TRUE(
                    result.lines.Contains("==================index " + std::to_string(k) + "=====================\n"));
            }
            EXPECT_EQ(-1, result.flags.TakeReady(kMaxExposures));
        });
    }
}

TEST(BinarizeFrames, AnEmptyFrameFailsAloneAndIsAnnounced)
{
    std::mt19937 rng(11);
    TestYuvImage vFrames[3];
    FillFrame(rng, vFrames[0], 8, 8);
    FillFrame(rng, vFrames[2], 8, 8);
    Binarized result(vFrames, 3);
    EXPECT_FALSE(result.bDone);
    EXPECT_TRUE(result.vWork[1].Empty());
    EXPECT_TRUE(result.vDetail[1].Empty());
    EXPECT_FALSE(result.vWork[2].Empty());
    EXPECT_FALSE(result.vDetail[2].Empty());
    for (int k = 0; k < 3; ++k) EXPECT_EQ(k, result.flags.TakeReady(3));
}

}  // namespace vkr
