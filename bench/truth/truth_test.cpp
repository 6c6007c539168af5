#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "foundation/mem_pool.h"
#include "truth/truth_burst.h"

namespace vkr::truth {
namespace {

TEST(CornerError, IsTheLargestDistanceOfTheFourCorners)
{
    const Homography nothing;
    EXPECT_EQ(0, CornerError(nothing, nothing, 640, 480));
    EXPECT_DOUBLE_EQ(5, CornerError(Translation(3, -4), nothing, 640, 480));
    const Homography wider{{1.01, 0, 0, 0, 1, 0, 0, 0, 1}};  // moves the right side only
    EXPECT_NEAR(6.39, CornerError(wider, nothing, 640, 480), 1e-9);
    const Homography scaled{{2, 0, 0, 0, 2, 0, 0, 0, 2}};
    EXPECT_EQ(0, CornerError(scaled, nothing, 640, 480));
    const Homography horizon{{1, 0, 0, 0, 1, 0, -0.01, 0, 1}};  // passes through the picture
    EXPECT_EQ(HUGE_VAL, CornerError(horizon, nothing, 640, 480));
    const Homography broken{{std::numeric_limits<double>::quiet_NaN(), 0, 0, 0, 1, 0, 0, 0, 1}};
    EXPECT_EQ(HUGE_VAL, CornerError(broken, nothing, 640, 480));
}

TEST(ChainPairs, LeadsEveryExposureToTheReference)
{
    // Where each exposure lies in the first one; the pair k takes exposure k + 1 to exposure k.
    const Homography vPlaces[] = {{}, {{0, -1, 7, 1, 0, 2, 0, 0, 1}}, {{1.1, 0, 3, 0, 0.9, 5, 1e-4, 0, 1}}, {}};
    Homography vPairs[3], vToReference[4];
    for (int k = 0; k < 3; ++k) vPairs[k] = Inverse(vPlaces[k]) * vPlaces[k + 1];
    for (int r = 0; r < 4; ++r) {
        ChainPairs(vPairs, 4, r, vToReference);
        for (int k = 0; k < 4; ++k) {
            EXPECT_LT(CornerError(vPlaces[r] * vToReference[k], vPlaces[k], 100, 80), 1e-9) << k << " to " << r;
        }
    }
    const Point moved = FromCentred({{0, -1, 0, 1, 0, 0, 0, 0, 1}}, 50, 40).Apply({60, 40});
    EXPECT_DOUBLE_EQ(50, moved.x);
    EXPECT_DOUBLE_EQ(50, moved.y);
}

class TruthBurstTest : public ::testing::Test {
protected:
    void SetUp() override { PoolInit(0); }
    void TearDown() override { PoolRelease(); }
};

double LumaAt(const CYuvImage& frame, Point point)
{
    const int x = static_cast<int>(point.x), y = static_cast<int>(point.y);
    const double fx = point.x - x, fy = point.y - y;
    const uint8_t *pUpper = frame.RowY(y) + x, *pLower = frame.RowY(y + 1) + x;
    return (1 - fy) * ((1 - fx) * pUpper[0] + fx * pUpper[1]) + fy * ((1 - fx) * pLower[0] + fx * pLower[1]);
}

// Mean square difference between a frame and the reference where the truth, moved by (dx, dy), says that it lies;
// within 40 pixels of a place.
double Mismatch(const TruthBurst& burst, int k, int nX, int nY, double dx, double dy)
{
    double fSum = 0;
    for (int y = nY - 40; y < nY + 40; ++y) {
        for (int x = nX - 40; x < nX + 40; ++x) {
            const Point place = burst.ToReference(k).Apply({x + 0.0, y + 0.0});
            const double f = LumaAt(burst.Frame(TruthBurst::kReference), {place.x + dx, place.y + dy});
            fSum += (f - burst.Frame(k).RowY(y)[x]) * (f - burst.Frame(k).RowY(y)[x]);
        }
    }
    return fSum / 6400;
}

// Where the parabola through three mismatches one pixel apart has its lowest point.
double Lowest(double fBefore, double fHere, double fAfter)
{
    return 0.5 * (fBefore - fAfter) / (fBefore - 2 * fHere + fAfter);
}

// Without noise and at one exposure: the truth is where the frames agree, in the middle and near the corners.
TEST_F(TruthBurstTest, FramesLieWhereTheTruthSays)
{
    TruthBurst burst;
    BurstParams params;
    params.fStops = params.fNoise = 0;
    for (params.nSeed = 0; params.nSeed < 3; ++params.nSeed) {
        ASSERT_TRUE(burst.Draw(params));
        const Homography vNothing[TruthBurst::kExposures];
        EXPECT_GT(burst.WorstCornerError(vNothing), 1);
        EXPECT_LT(burst.WorstCornerError(vNothing), 0.05 * 640);
        for (int i = 0; i < 10; ++i) {
            const int k = i % 2 * 2, nPlace = i / 2;
            const int x = nPlace == 4 ? 320 : (nPlace % 2 == 0 ? 75 : 565);
            const int y = nPlace == 4 ? 240 : (nPlace / 2 == 0 ? 75 : 405);
            const double fHere = Mismatch(burst, k, x, y, 0, 0);
            const double fLeft = Mismatch(burst, k, x, y, -1, 0), fRight = Mismatch(burst, k, x, y, 1, 0);
            const double fUp = Mismatch(burst, k, x, y, 0, -1), fDown = Mismatch(burst, k, x, y, 0, 1);
            EXPECT_NEAR(0, Lowest(fLeft, fHere, fRight), 0.05) << "seed " << params.nSeed << " frame " << k;
            EXPECT_NEAR(0, Lowest(fUp, fHere, fDown), 0.05) << "seed " << params.nSeed << " frame " << k;
        }
    }
}

double Deviation(const TruthBurst& noisy, const TruthBurst& clean, int k)
{
    double fSum = 0, fCount = 0;
    const CYuvImage& frame = clean.Frame(k);
    for (int i = 0; i < frame.nWidth * frame.nHeight; ++i) {
        if (frame.pY[i] < 40 || frame.pY[i] > 200) continue;
        const double f = noisy.Frame(k).pY[i] - frame.pY[i];
        fSum += f * f;
        ++fCount;
    }
    return std::sqrt(fSum / fCount);
}

TEST_F(TruthBurstTest, ExposuresNoiseAndRepetition)
{
    TruthBurst noisy, clean, again;
    BurstParams params;
    params.nWidth = 322;
    params.nHeight = 240;
    params.nSeed = 7;
    ASSERT_TRUE(noisy.Draw(params));
    const int nThreads = omp_get_max_threads();
    omp_set_num_threads(5);
    ASSERT_TRUE(again.Draw(params));
    omp_set_num_threads(nThreads);
    params.fNoise = 0;
    ASSERT_TRUE(clean.Draw(params));
    double vMean[TruthBurst::kExposures] = {}, vWhite[TruthBurst::kExposures] = {};
    for (int k = 0; k < TruthBurst::kExposures; ++k) {
        EXPECT_EQ(0, std::memcmp(noisy.Frame(k).pY, again.Frame(k).pY, 322 * 240 * 3 / 2));
        for (int i = 0; i < 322 * 240; ++i) {
            vMean[k] += clean.Frame(k).pY[i] / (322.0 * 240);
            vWhite[k] += (clean.Frame(k).pY[i] == 255 ? 1 : 0) / (322.0 * 240);
        }
        EXPECT_GT(Deviation(noisy, clean, k), 0.8) << k;
        EXPECT_LT(Deviation(noisy, clean, k), 3) << k;
    }
    EXPECT_LT(vMean[0] + 40, vMean[1]);
    EXPECT_LT(vMean[1] + 40, vMean[2]);
    EXPECT_LT(vWhite[0], vWhite[1]);
    EXPECT_LT(vWhite[1] + 0.02, vWhite[2]);
}

}  // namespace
}  // namespace vkr::truth
