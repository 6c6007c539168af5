#include "ghosts/ghost_embedding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "foundation/image_scope.h"
#include "ghosts/level_carry.h"
#include "support/for_threads.h"
#include "support/pyramid_with.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {

namespace {

using Pixels = std::vector<uint8_t>;

// A burst of grey frames with noise, the brightest with the largest weights, and a ghost map without ghosts.
struct GhostBurst {
    GhostBurst(int w, int h, int n, const PyramidParams& pyramidParams = PyramidWith(1))
        : nExposureNum(n), nReference(n / 2), pyramid(pyramidParams)
    {
        std::mt19937 rng(5);
        FillConstant(ghost, w, h, 1, 0);
        for (int k = 0; k < n; ++k) FillRandom(rng, vFrames[k], w, h, 3, 20 * k, 40 + 20 * k);
        FillRandom(rng, vWeights[0], w, h, n, 0, 100 / n);
        for (size_t i = n - 1; i < vWeights[0].Samples(); i += n) vWeights[0].pData[i] += 28;
        for (; vWeights[nLevels - 1].nWidth > 1 << pyramid.nTopLevel; ++nLevels) {
            EXPECT_TRUE(HalveImage(vWeights[nLevels - 1], vWeights[nLevels], false, false));
        }
    }
    ~GhostBurst()
    {
        for (CShortImage& level : vCoefs) level.Release();
    }
    void AddGhost(int x, int y, int w, int h)
    {
        for (int i = y; i < y + h; ++i) std::fill_n(ghost.Row(i) + x, w, uint8_t{128});
    }
    GhostEmbedding Embed()
    {
        LinesScope lines;
        CImage vPlain[kMaxExposures], vLevels[kMaxLevels];
        for (int k = 0; k < nExposureNum; ++k) vPlain[k] = vFrames[k];
        for (int i = 0; i < kMaxLevels; ++i) vLevels[i] = vWeights[i];
        LimitDeghostLevels(nLevels, params, fusion);
        const auto result =
            GhostEmbeddingIntoWeight(ghost, {vPlain, nExposureNum, nReference},
                                     {params, fusion, pyramid, DisplayCurve{}}, {}, vLevels, vCoefs, &choice);
        for (int i = 0; i < kMaxLevels; ++i) static_cast<CImage&>(vWeights[i]) = vLevels[i];
        sLines = LinesScope::Text();
        return result;
    }
    std::vector<Pixels> Weights() const
    {
        std::vector<Pixels> vLevels;
        for (int i = 0; i < nLevels; ++i) vLevels.push_back(Samples(vWeights[i]));
        return vLevels;
    }

    int nExposureNum, nReference, nLevels = 1;
    PyramidParams pyramid;
    GhostEmbedParams params;
    EdgeCompensateParams fusion;
    TestImage ghost, vFrames[kMaxExposures], vWeights[kMaxLevels];
    CShortImage vCoefs[kMaxLevels] = {};
    TestShortImage choice;
    std::string sLines;
};

// What a level must be after its finer or coarser neighbour.
template <class Image>
std::vector<std::remove_pointer_t<decltype(Image::pData)>> Cropped(const Image& image, int w, int h)
{
    std::vector<std::remove_pointer_t<decltype(Image::pData)>> vRows;
    for (int y = 0; y < h; ++y) vRows.insert(vRows.end(), image.Row(y), image.Row(y) + w * image.nDim);
    return vRows;
}

void ExpectCarried(const GhostBurst& burst)
{
    const PyramidParams& pyramid = burst.pyramid;
    TestImage image;
    TestShortImage coefs;
    for (int i = burst.fusion.nMinDeghostLevel; i <= burst.fusion.nMaxDeghostLevel; ++i) {
        const CImage& level = burst.vWeights[i];
        ASSERT_EQ(Samples(level).size(), Samples(burst.vCoefs[i]).size()) << i;
        if (i == burst.params.nStartDeghostLevel) continue;
        const bool bCoarser = i > burst.params.nStartDeghostLevel;
        const int nFrom = bCoarser ? i - 1 : i + 1;
        const auto Carry = [&](const auto& from, auto& to, auto Halve, auto Double) {
            return bCoarser ? Halve(from, to, pyramid.bPyramidFilter, pyramid.bDownScaleOtherDither)
                            : Double(from, to, pyramid.bPyramidFilter, pyramid.bUpScaleOtherDither);
        };
        ASSERT_TRUE(Carry(burst.vWeights[nFrom], image, HalveImage, DoubleImage));
        ASSERT_TRUE(Carry(burst.vCoefs[nFrom], coefs, HalveShort, DoubleShort));
        EXPECT_EQ(Cropped(static_cast<CImage&>(image), level.nWidth, level.nHeight), Samples(level)) << i;
        EXPECT_EQ(Cropped(static_cast<CShortImage&>(coefs), level.nWidth, level.nHeight), Samples(burst.vCoefs[i]))
            << i;
    }
}

}  // namespace

TEST(LimitDeghostLevels, KeepsStartBetweenTheLimitsAndAllInThePyramid)
{
    const auto Limited = [](int nMin, int nStart, int nMax, int nTotal) {
        GhostEmbedParams params;
        EdgeCompensateParams fusion;
        fusion.nMinDeghostLevel = nMin;
        fusion.nMaxDeghostLevel = nMax;
        params.nStartDeghostLevel = nStart;
        LimitDeghostLevels(nTotal, params, fusion);
        return std::vector<int>{fusion.nMinDeghostLevel, params.nStartDeghostLevel, fusion.nMaxDeghostLevel};
    };
    EXPECT_EQ((std::vector<int>{0, 3, 4}), Limited(0, 3, 4, 8));
    EXPECT_EQ((std::vector<int>{0, 2, 2}), Limited(0, 3, 4, 3));
    EXPECT_EQ((std::vector<int>{5, 5, 5}), Limited(5, 3, 4, 8));
    EXPECT_EQ((std::vector<int>{0, 0, 0}), Limited(16, 16, 16, 1));
    EXPECT_EQ((std::vector<int>{1, 7, 7}), Limited(1, 16, 16, 8));
}

TEST(GhostEmbedding, GivesARegionToOneExposureAndCarriesItToTheLevels)
{
    for (const int bFilter : {0, 1}) {
        for (const int bDither : {0, 1}) {
            for (const int nStart : {0, 2, 4}) {
                SCOPED_TRACE(testing::Message()
                             << "filter " << bFilter << ", dither " << bDither << ", start " << nStart);
                GhostBurst burst(211, 149, 3, PyramidWith(1, bFilter, bDither));
                burst.AddGhost(64, 48, 64, 64);
                burst.params.nStartDeghostLevel = nStart;
                burst.params.nGhostSmoothIter = 1;
                burst.fusion.nMaxDeghostLevel = 5;
                const auto vBefore = burst.Weights();
                ASSERT_EQ(GhostEmbedding::kRegions, burst.Embed());
                ExpectCarried(burst);
                const CImage& start = burst.vWeights[nStart];
                const int x = 96 >> nStart, y = 80 >> nStart;
                EXPECT_EQ((Pixels{0, 0, 128}), Pixels(start.Row(y) + 3 * x, start.Row(y) + 3 * x + 3));
                ASSERT_EQ(start.Samples(), burst.choice.Samples());
                EXPECT_EQ(128, burst.choice.Row(y)[3 * x + 2]);
                EXPECT_EQ(0, burst.choice.Row(0)[2]);
                EXPECT_TRUE(std::equal(start.pData, start.pData + 3 * 8, vBefore[nStart].begin()));  // far from it
                for (size_t i = 0; i < start.Samples(); ++i) {  // the old weights have what the shares leave
                    const int16_t* pShares = burst.choice.pData + i / 3 * 3;
                    const int nSum = pShares[0] + pShares[1] + pShares[2], nOld = vBefore[nStart][i];
                    const int nNew = ((128 - std::min(nSum, 128)) * nOld + pShares[i % 3] * 128) / std::max(nSum, 128);
                    ASSERT_EQ(nNew, start.pData[i]) << i;
                }
                EXPECT_EQ(128, burst.vCoefs[nStart].Row(y)[3 * x + 2]);
                for (int i = 6; i < burst.nLevels; ++i) EXPECT_EQ(vBefore[i], Samples(burst.vWeights[i]));
            }
        }
    }
}

// Inside the region the reference loses its weight to a darker exposure, in steps of the strength.
TEST(GhostEmbedding, MixesByStrengthAndCompensatesTheReceiver)
{
    GhostBurst burst(40, 40, 2);
    FillConstant(burst.vWeights[0], 40, 40, 2, 100);
    for (size_t i = 1; i < burst.vWeights[0].Samples(); i += 2) burst.vWeights[0].pData[i] = 60;
    FillConstant(burst.vFrames[0], 40, 40, 3, 32);
    burst.AddGhost(10, 10, 20, 20);
    burst.params.nStartDeghostLevel = burst.fusion.nMaxDeghostLevel = 0;
    burst.params.DeGhostStrength = 64;
    burst.params.nMaxCompensateGain = 1000;
    ASSERT_EQ(GhostEmbedding::kRegions, burst.Embed());
    const uint8_t* pInside = burst.vWeights[0].Row(20) + 2 * 20;
    EXPECT_EQ(107, pInside[0]);  // (64 * 128 + 192 * 100) / 256
    EXPECT_EQ(45, pInside[1]);
    // Shares of the brighter one 384 and 303 of 1024; 1.75 times as bright: 128 + 96 * 81 / 1024.
    EXPECT_EQ(135, burst.vCoefs[0].Row(20)[2 * 20]);
    EXPECT_EQ(128, burst.vCoefs[0].Row(20)[2 * 20 + 1]);
}

TEST(GhostEmbedding, StopsAtItsLimits)
{
    GhostBurst burst(256, 192, 3);
    burst.params.nStartDeghostLevel = 0;
    const auto vBefore = burst.Weights();
    const auto ExpectUntouched = [&](const char* pWhy) {
        SCOPED_TRACE(pWhy);
        EXPECT_EQ(GhostEmbedding::kNone, burst.Embed());
        EXPECT_EQ(vBefore, burst.Weights());
        for (const CShortImage& level : burst.vCoefs) EXPECT_TRUE(level.Empty());
        EXPECT_TRUE(burst.choice.Empty());
    };
    ExpectUntouched("no ghosts");
    burst.AddGhost(20, 20, 15, 10);  // 150 of 49152 pixels are 50 / 16384
    ExpectUntouched("a speck");
    EXPECT_NE(std::string::npos, burst.sLines.find("GhostArea=150 pixels, Th=15000\n"));
    for (int i = 0; i < 33; ++i) burst.AddGhost(i % 11 * 23, 40 + i / 11 * 40, 16, 12);
    ExpectUntouched("33 regions");
    EXPECT_NE(std::string::npos, burst.sLines.find("Too many ghost regions"));
    burst.params.nGhostLimitPerTh = 0;
    ExpectUntouched("33 regions, over the limit");

    burst.params.nMaxGhostRegionNum = 33;
    ASSERT_EQ(GhostEmbedding::kWholePicture, burst.Embed());
    for (size_t i = 0; i < burst.vWeights[0].Samples(); ++i)
        ASSERT_EQ(i % 3 == 1 ? 128 : 0, burst.vWeights[0].pData[i]);
    EXPECT_EQ(128, burst.vCoefs[4].pData[0]);
    ExpectCarried(burst);
}

// A quarter of the picture: no region is large enough, yet all of them count towards the limit.
TEST(GhostEmbedding, TakesTensOfThousandsOfSpecksForOneGhost)
{
    GhostBurst burst(512, 384, 2);
    burst.params.nStartDeghostLevel = 0;
    for (int i = 0; i < 512 * 384 / 4; ++i) burst.ghost.Row(i / 256 * 2)[i % 256 * 2] = 65;
    burst.params.nGhostLimitPerTh = 4096;  // just that area, which is not above it
    EXPECT_EQ(GhostEmbedding::kNone, burst.Embed());
    burst.params.nGhostLimitPerTh = 4095;
    EXPECT_EQ(GhostEmbedding::kWholePicture, burst.Embed());
}

TEST(GhostEmbedding, IsTheSameFromAnyTeamAndTouchesAllBorders)
{
    std::vector<Pixels> vWant;
    ForThreads([&](int nThreads) {
        GhostBurst burst(203, 155, 3);
        burst.AddGhost(0, 0, 203, 155);
        for (int y = 30; y < 125; ++y) std::fill_n(burst.ghost.Row(y) + 40, 123, uint8_t{0});
        burst.params.nGhostLimitPerTh = 16384;
        burst.params.nGhostSmoothIter = 16;
        ASSERT_EQ(GhostEmbedding::kRegions, burst.Embed());
        ExpectCarried(burst);
        EXPECT_EQ(128, burst.vWeights[3].pData[2]);
        if (vWant.empty()) vWant = burst.Weights();
        EXPECT_EQ(vWant, burst.Weights()) << nThreads;
    });
}

TEST(GhostEmbedding, WorksOnAnySizeAndNumberOfExposures)
{
    for (const auto& [w, h] : {std::pair{1, 1}, {2, 1}, {1, 9}, {40, 1}, {41, 3}, {5, 300}}) {
        for (int n = 1; n <= kMaxExposures; ++n) {
            for (const int bFilter : {0, 1}) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << ", " << n << " exposures, filter " << bFilter);
                GhostBurst burst(w, h, n, PyramidWith(1, bFilter));
                burst.AddGhost(0, 0, w, h);
                EXPECT_EQ(GhostEmbedding::kWholePicture, burst.Embed());
                for (size_t i = 0; i < burst.vWeights[0].Samples(); ++i) {
                    ASSERT_EQ(static_cast<int>(i % n) == n / 2 ? 128 : 0, burst.vWeights[0].pData[i]);
                }
            }
        }
    }
}

// The plain doubling needs two rows: a level of one counts twice.
TEST(CarryToLevels, ALevelOfOneRowIsDoubledAsTwo)
{
    TestImage twoRows, vOwners[2];
    CImage vLevels[2] = {}, doubled{};
    const ImageScope<CImage> scope(doubled);
    ASSERT_TRUE(vOwners[0].AllocateGray(8, 2) && vOwners[1].AllocateGray(4, 1) && twoRows.AllocateGray(4, 2));
    for (int i = 0; i < 8; ++i) twoRows.pData[i] = vOwners[1].pData[i % 4] = static_cast<uint8_t>(9 + 31 * (i % 4));
    PyramidParams pyramid = PyramidWith(1);
    pyramid.bPyramidFilter = 0;
    ASSERT_TRUE(DoubleImage(twoRows, doubled, false, pyramid.bUpScaleOtherDither));
    for (int i = 0; i < 2; ++i) vLevels[i].Swap(vOwners[i]);
    EXPECT_TRUE(CarryToLevels(vLevels, vLevels, 0, 1, 1, pyramid));
    for (int i = 0; i < 2; ++i) vLevels[i].Swap(vOwners[i]);
    ASSERT_EQ(2, vOwners[0].nHeight);
    EXPECT_TRUE(std::equal(vOwners[0].pData, vOwners[0].pData + 16, doubled.pData));
}

TEST(GhostEmbedding, LeavesWhatDoesNotFit)
{
    GhostBurst burst(64, 48, 3);
    burst.params.nStartDeghostLevel = 0;
    const auto vBefore = burst.Weights();
    FillConstant(burst.ghost, 63, 48, 1, 128);
    EXPECT_EQ(GhostEmbedding::kFailed, burst.Embed());
    FillConstant(burst.ghost, 64, 48, 3, 128);
    EXPECT_EQ(GhostEmbedding::kFailed, burst.Embed());
    burst.nReference = 3;
    EXPECT_EQ(GhostEmbedding::kFailed, burst.Embed());
    EXPECT_EQ(vBefore, burst.Weights());
    burst.nReference = 1;
    FillConstant(burst.ghost, 65, 49, 1, 128);  // a column and a row more
    EXPECT_EQ(GhostEmbedding::kWholePicture, burst.Embed());
}

}  // namespace vkr
