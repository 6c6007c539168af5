#include "scene/demo_scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "foundation/image_scope.h"
#include "support/for_threads.h"

namespace vkr {

namespace {

struct Burst {
    CYuvImage vFrames[8] = {};
    ImageScope<CYuvImage[8]> scope{vFrames};
};

std::vector<uint8_t> BytesOf(const CYuvImage& frame)
{
    const size_t nBytes = static_cast<size_t>(frame.nWidth) * frame.nHeight / 2 * 3;
    return std::vector<uint8_t>(frame.pBuffer, frame.pBuffer + nBytes);
}

std::vector<uint8_t> Draw(const SceneParams& params)
{
    Burst burst;
    EXPECT_TRUE(DrawDemoBurst(params, burst.vFrames));
    std::vector<uint8_t> vAll;
    for (int k = 0; k < params.nExposures; ++k) {
        const std::vector<uint8_t> vFrame = BytesOf(burst.vFrames[k]);
        vAll.insert(vAll.end(), vFrame.begin(), vFrame.end());
    }
    return vAll;
}

uint64_t Fnv(const std::vector<uint8_t>& vBytes)
{
    return std::accumulate(vBytes.begin(), vBytes.end(), uint64_t{14695981039346656037U},
                           [](uint64_t nHash, uint8_t n) { return (nHash ^ n) * 1099511628211U; });
}

double MeanLuma(const CYuvImage& frame)
{
    const size_t nPixels = static_cast<size_t>(frame.nWidth) * frame.nHeight;
    return std::accumulate(frame.pY, frame.pY + nPixels, 0.0) / static_cast<double>(nPixels);
}

SceneParams Small()
{
    SceneParams params;
    params.nWidth = 120;
    params.nHeight = 80;
    return params;
}

}  // namespace

// Other tests hash what the library makes of this burst: these bytes are the same on every machine.
TEST(DrawDemoBurst, GivesTheSameBytesEverywhere)
{
    EXPECT_EQ(4543053717876335975U, Fnv(Draw(Small())));
}

TEST(DrawDemoBurst, GivesTheSameBytesFromAnyTeam)
{
    SceneParams params = Small();
    params.nHeight = 14;  // seven pairs of rows: uneven blocks
    params.nExposures = 2;
    const std::vector<uint8_t> vWant = Draw(params);
    ForThreads([&](int nThreads) { EXPECT_EQ(vWant, Draw(params)) << nThreads; });
}

TEST(DrawDemoBurst, ExposesTheSameRoomInSteps)
{
    SceneParams params = Small();
    params.nExposures = 4;
    Burst burst;
    ASSERT_TRUE(DrawDemoBurst(params, burst.vFrames));
    for (int k = 1; k < 4; ++k) EXPECT_GT(MeanLuma(burst.vFrames[k]), MeanLuma(burst.vFrames[k - 1]) + 15) << k;
    SceneParams single = params;  // frame 1 of 4 and the only frame of 1 are the normal exposure
    single.nExposures = 1;
    single.fNoise = params.fNoise = 0;
    const std::vector<uint8_t> vAll = Draw(params), vSingle = Draw(single);
    const auto second = vAll.begin() + static_cast<std::ptrdiff_t>(vSingle.size());
    EXPECT_TRUE(std::equal(vSingle.begin(), vSingle.end(), second));
}

TEST(DrawDemoBurst, SeedsOnlyTheNoise)
{
    SceneParams a = Small(), b = Small();
    b.nSeed = 2;
    EXPECT_NE(Draw(a), Draw(b));
    a.fNoise = b.fNoise = 0;
    EXPECT_EQ(Draw(a), Draw(b));
}

TEST(DrawDemoBurst, HasTheNoiseThatWasAskedFor)
{
    SceneParams params = Small();
    params.nExposures = 1;
    params.fNoise = 0;
    const std::vector<uint8_t> vClean = Draw(params);
    params.fNoise = 4;
    const std::vector<uint8_t> vNoisy = Draw(params);
    double fSum = 0, fSquares = 0;
    const int nPixels = params.nWidth * params.nHeight;
    for (int i = 0; i < nPixels; ++i) {
        fSum += vNoisy[i] - vClean[i];
        fSquares += (vNoisy[i] - vClean[i]) * (vNoisy[i] - vClean[i]);
    }
    EXPECT_NEAR(0, fSum / nPixels, 0.3);
    EXPECT_NEAR(4, std::sqrt(fSquares / nPixels), 0.8);
}

TEST(DrawDemoBurst, RefusesWhatIsOutOfRange)
{
    for (int i = 0; i < 6; ++i) {
        SceneParams params = Small();
        if (i == 0) params.nWidth = 121;
        if (i == 1) params.nHeight = 0;
        if (i == 2) params.nWidth = 16386;
        if (i == 3) params.nExposures = 9;
        if (i == 4) params.nExposures = 0;
        if (i == 5) params.fStops = -1;
        Burst burst;
        EXPECT_FALSE(DrawDemoBurst(params, burst.vFrames)) << i;
        EXPECT_EQ(nullptr, burst.vFrames[0].pBuffer);
    }
}

}  // namespace vkr
