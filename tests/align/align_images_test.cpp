#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "align/align_pyramid.h"
#include "align/multiple_images_align_filter.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/rectangle_scene.h"

namespace vkr {
namespace {

struct Shift {
    int x, y;
};

// A filter for small pictures, a burst of it, and what it made of it.
struct Alignment {
    CMultipleImagesAlignFilterOpt filter;
    TestYuvImage vFrames[kMaxExposures];
    CYuvImage vBurst[kMaxExposures] = {};
    TestImage vMaskOwners[kMaxExposures];
    CImage vMasks[kMaxExposures] = {};
    ValidRange range;
    int nExposureNum = 0;

    Alignment()
    {
        filter.nFeatureMatchLevel = 2;
        filter.nMatchLevel = 3;
        filter.nMinFeatureNum = 8;
        filter.bDumpDebug = 0;
    }
    ~Alignment()
    {
        for (CYuvImage& frame : vBurst) frame.Release();
        for (CImage& mask : vMasks) mask.Release();
    }
    CYuvImage& Add() { return vBurst[nExposureNum++]; }
    void AddCut(const RectangleScene& scene, Shift shift, int w, int h, double fGain)
    {
        scene.Cut(60 + shift.x, 60 + shift.y, w, h, fGain, Add());
    }
    void AddConstant(int w, int h, int nValue)
    {
        CYuvImage& frame = Add();
        ASSERT_TRUE(frame.Allocate(w, h));
        std::fill_n(frame.pBuffer, w * h / 2 * 3, static_cast<uint8_t>(nValue));
    }
    bool Run(int nReference, const StageDumps& dumps = {})
    {
        const LinesScope lines;
        return filter.AlignImages(vBurst, nExposureNum, nReference, vMasks, range, dumps);
    }
    std::vector<std::vector<uint8_t>> Bytes() const
    {
        std::vector<std::vector<uint8_t>> vBytes;
        for (int k = 0; k < nExposureNum; ++k) vBytes.push_back(Samples(vBurst[k]));
        return vBytes;
    }
    bool AllValid() const
    {
        for (int k = 0; k < nExposureNum; ++k) {
            for (size_t i = 0; i < vMasks[k].Samples(); ++i) {
                if (vMasks[k].pData[i] != 255) return false;
            }
        }
        return true;
    }
};

constexpr int kW = 320, kH = 256;
constexpr Shift kShifts[4] = {{-4, 2}, {0, 0}, {6, -4}, {2, 2}};
constexpr double kGains[4] = {0.4, 1.0, 1.15, 0.7};

void FillShifted(Alignment& alignment, int nExposureNum, int w = kW, int h = kH)
{
    const RectangleScene scene(5);
    for (int k = 0; k < nExposureNum; ++k) alignment.AddCut(scene, kShifts[k], w, h, kGains[k]);
}

// Mean luma difference between a frame and the scene as the reference's place shows it, 24 pixels off the border.
double InnerDifference(const CYuvImage& frame, double fGain)
{
    TestYuvImage wanted;
    RectangleScene(5).Cut(60, 60, frame.nWidth, frame.nHeight, fGain, wanted);
    double fSum = 0;
    for (int y = 24; y < frame.nHeight - 24; ++y) {
        for (int x = 24; x < frame.nWidth - 24; ++x) fSum += std::abs(frame.RowY(y)[x] - wanted.RowY(y)[x]);
    }
    return fSum / ((frame.nHeight - 48) * (frame.nWidth - 48));
}

TEST(AlignImages, ShiftedExposuresComeToLieOnTheReference)
{
    for (const int nReference : {0, 1, 3}) {
        Alignment alignment;
        FillShifted(alignment, 4);
        const Shift& origin = kShifts[nReference];
        ASSERT_TRUE(alignment.Run(nReference));
        for (int j = 0; j < 3; ++j) {  // a pair's homography is the shift between its two cuts
            const CMatrix& h = alignment.filter.PairHomography(j);
            EXPECT_NEAR(kShifts[j + 1].x - kShifts[j].x, h.At(0, 2), 0.1) << j;
            EXPECT_NEAR(kShifts[j + 1].y - kShifts[j].y, h.At(1, 2), 0.1) << j;
        }
        EXPECT_EQ(0, alignment.range.m_nFirstValid);
        EXPECT_EQ(4, alignment.range.m_nLastValid);
        if (origin.x != 0 || origin.y != 0) continue;
        for (int k = 0; k < 4; ++k) EXPECT_LT(InnerDifference(alignment.vBurst[k], kGains[k]), 1.5) << k;
        EXPECT_FALSE(alignment.AllValid());
    }
}

TEST(AlignImages, SamePixelsFromAnyTeamAndEveryRun)
{
    std::vector<std::vector<uint8_t>> vWant;
    Alignment again;  // one filter for all runs: what a run leaves behind must not show
    ForThreads([&](int nThreads) {
        again.nExposureNum = 0;
        FillShifted(again, 3, 330, 250);
        ASSERT_TRUE(again.Run(1));
        for (int k = 0; k < 3; ++k) ASSERT_EQ(330, again.vBurst[k].nWidth);
        EXPECT_EQ(330 + 2, again.vMasks[1].nWidth);  // the reference's mask keeps the padding
        EXPECT_EQ(250 + 2, again.vMasks[1].nHeight);
        EXPECT_EQ(166, again.vMasks[0].nWidth);
        if (vWant.empty()) vWant = again.Bytes();
        EXPECT_EQ(vWant, again.Bytes()) << nThreads;
    });
}

// Pairs without a match leave the frames as they lie; where it is asked for they also cut the burst.
TEST(AlignImages, FailedPairsKeepTheirPlace)
{
    const RectangleScene scene(5), other(77);
    for (const int bDrop : {0, 1}) {
        for (const int nOdd : {0, 1, 3}) {  // which frame shows something else; 1 is the reference
            for (const int nKind : {0, 128, -1}) {
                Alignment alignment;
                alignment.filter.bDropAlignFail = bDrop;
                for (int k = 0; k < 4; ++k) {
                    if (k != nOdd) {
                        alignment.AddCut(scene, {0, 0}, kW, kH, 1.0);
                    } else if (nKind >= 0) {
                        alignment.AddConstant(kW, kH, nKind);
                    } else {
                        alignment.AddCut(other, {0, 0}, kW, kH, 1.0);
                    }
                }
                const auto vBefore = alignment.Bytes();
                ASSERT_TRUE(alignment.Run(1));
                EXPECT_EQ(vBefore[nOdd], alignment.Bytes()[nOdd]) << nOdd << " " << nKind;
                EXPECT_EQ(vBefore[1], alignment.Bytes()[1]);
                EXPECT_EQ(bDrop && nOdd <= 1 ? 1 : 0, alignment.range.m_nFirstValid) << nOdd << " " << nKind;
                const int nLast = nOdd == 1 ? 2 : nOdd == 3 ? 3 : 4;
                EXPECT_EQ(bDrop ? nLast : 4, alignment.range.m_nLastValid) << nOdd << " " << nKind;
            }
        }
    }
}

// Nothing to find: every size and level must come back whole.
TEST(AlignImages, TinyAndFeaturelessBurstsAreCopied)
{
    for (const Shift size : {Shift{2, 2}, Shift{2, 40}, Shift{6, 4}, Shift{18, 14}, Shift{40, 10}}) {
        for (const int nLevel : {0, 3, 8}) {
            for (const int bFilter : {0, 1}) {
                Alignment alignment;
                alignment.filter.nFeatureMatchLevel = alignment.filter.nMatchLevel = nLevel;
                alignment.filter.nHistogramMatchingLevel = 8;
                alignment.filter.bAlignPyramidDither = alignment.filter.bAlignPyramidFilter = bFilter;
                FillShifted(alignment, 1, size.x, size.y);
                alignment.AddConstant(size.x, size.y, 3);
                FillShifted(alignment, 1, size.x, size.y);
                const auto vBefore = alignment.Bytes();
                ASSERT_TRUE(alignment.Run(1));
                EXPECT_EQ(vBefore, alignment.Bytes());
                EXPECT_TRUE(alignment.AllValid());
            }
        }
    }
}

TEST(AlignImages, OneFrameIsLeftAlone)
{
    Alignment alignment;
    FillShifted(alignment, 1);
    const auto vBefore = alignment.Bytes();
    ASSERT_TRUE(alignment.Run(0));
    EXPECT_EQ(vBefore, alignment.Bytes());
    EXPECT_TRUE(alignment.AllValid());
    EXPECT_EQ(kW, alignment.vMasks[0].nWidth);
}

TEST(AlignImages, DumpsAreWrittenOnlyWhereBothSwitchesAllow)
{
    namespace fs = std::filesystem;
    const fs::path before = fs::current_path();
    const fs::path folder = fs::temp_directory_path() / ("vkr_align_dump_" + std::to_string(getpid()));
    fs::create_directories(folder / "FeatureMatchDump");
    fs::current_path(folder);
    const auto count = [&] {
        int nFiles = 0;
        for (const auto& entry : fs::recursive_directory_iterator(folder)) nFiles += entry.is_regular_file() ? 1 : 0;
        return nFiles;
    };
    for (const Shift flags : {Shift{0, 1}, Shift{1, 0}, Shift{1, 1}}) {
        Alignment alignment;
        FillShifted(alignment, 2);
        alignment.filter.bDumpDebug = flags.x;
        EXPECT_TRUE(alignment.Run(0, {flags.y, 0}));
        // Levels of two exposures and of the mapped one, two aligned frames with masks; features, matches and texts.
        EXPECT_EQ(flags.x && flags.y ? 3 * 3 + 4 + 2 + 6 : 0, count());
    }
    EXPECT_TRUE(fs::exists("AlignDump\\Im0_HE1_lvl2.bmp"));
    EXPECT_TRUE(fs::exists("FeatureMatchDump/FinalMatch__Exp0_1.txt"));
    fs::current_path(before);
    fs::remove_all(folder);
}

TEST(MatchShares, NearestShareAndTheLowestOfEqualOnes)
{
    float vFrom[256], vTo[256];
    for (int v = 0; v < 256; ++v) {
        vFrom[v] = static_cast<float>(v) / 255.0f;
        vTo[v] = v < 100 ? 0.0f : v < 200 ? 0.5f : 1.0f;
    }
    uint8_t vTable[256];
    MatchShares(vFrom, vTo, vTable);
    EXPECT_EQ(0, vTable[0]);
    EXPECT_EQ(0, vTable[63]);
    EXPECT_EQ(100, vTable[64]);
    EXPECT_EQ(100, vTable[191]);
    EXPECT_EQ(200, vTable[192]);
    EXPECT_EQ(200, vTable[255]);
}

}  // namespace
}  // namespace vkr
