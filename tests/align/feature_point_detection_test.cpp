#include "align/feature_point_detection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include "align/feature_response.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {

bool operator==(const FeaturePoint& a, const FeaturePoint& b)
{
    return a.x == b.x && a.y == b.y && a.fResponse == b.fResponse && a.nMatch == b.nMatch;
}
void PrintTo(const FeaturePoint& point, std::ostream* pOut)
{
    *pOut << "(" << point.x << "," << point.y << " " << point.fResponse << " " << point.nMatch << ")";
}

namespace {

using FeatureList = std::vector<FeaturePoint>;
using Detector = CFeaturePointDetectionOpt;

// ---- A slow second writing: one pixel at a time, from the picture itself.

int At(const CImage& image, int x, int y)
{
    x = std::min(std::max(x, 0), image.nWidth - 1);
    y = std::min(std::max(y, 0), image.nHeight - 1);
    return image.pData[static_cast<size_t>(y) * image.nWidth + x];
}

// The ring as a drawing, each point by its group.
constexpr char kRingGroups[7][8] = {"  301  ", " 2   2 ", "1     3", "0     0", "3     1", " 2   2 ", "  103  "};

bool SlowRing(const CImage& image, int x, int y, const Detector& detector)
{
    const int c = At(image, x, y);
    const int t = std::max(detector.nThre, static_cast<int>(std::floor((detector.nRatio * (255 - c) + 64) / 128.0)));
    int vDark[4] = {};
    int vBright[4] = {};
    for (int j = 0; j < 7; ++j) {
        for (int i = 0; i < 7; ++i) {
            if (kRingGroups[j][i] == ' ') continue;
            const int nGroup = kRingGroups[j][i] - '0';
            const int nDiff = At(image, x + i - 3, y + j - 3) - c;
            if (nDiff < -t) ++vDark[nGroup];
            if (nDiff > t) ++vBright[nGroup];
        }
    }
    for (int g = 0; g < 4; ++g) {
        if (std::max(vDark[g], vBright[g]) < detector.nPtThre1) return false;
    }
    return std::max(vDark[0] + vDark[1] + vDark[2] + vDark[3], vBright[0] + vBright[1] + vBright[2] + vBright[3]) >=
           detector.nPtThre2;
}

float SlowHarris(const CImage& image, int x, int y, int nHarrisK)
{
    const int vTaps[5][5] = {
        {1, 4, 6, 4, 1}, {4, 16, 24, 16, 4}, {6, 24, 36, 24, 6}, {4, 16, 24, 16, 4}, {1, 4, 6, 4, 1}};
    double dXX = 0, dYY = 0, dXY = 0;
    for (int j = -2; j <= 2; ++j) {
        for (int i = -2; i <= 2; ++i) {
            const double dDx = At(image, x + i + 1, y + j) - At(image, x + i - 1, y + j);
            const double dDy = At(image, x + i, y + j + 1) - At(image, x + i, y + j - 1);
            dXX += vTaps[j + 2][i + 2] * dDx * dDx;
            dYY += vTaps[j + 2][i + 2] * dDy * dDy;
            dXY += vTaps[j + 2][i + 2] * dDx * dDy;
        }
    }
    // Every store to a volatile rounds to float.
    volatile float a = static_cast<float>(dXX / 256), b = static_cast<float>(dYY / 256);
    volatile float c = static_cast<float>(dXY / 256), k = static_cast<float>(nHarrisK / 100.0);
    volatile float fDet = a * b, fCross = c * c, fTrace = a + b;
    fTrace = fTrace * fTrace;
    fTrace = k * fTrace;
    fDet = fDet - fCross;
    return fDet - fTrace;
}

FeatureList SlowDetect(const Detector& detector, const CImage& image, int x0, int y0, int x1, int y1, size_t nCapacity)
{
    const int w = x1 - x0;
    const int h = y1 - y0;
    std::vector<float> vMap(static_cast<size_t>(w) * h, 0.0f);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const float r = SlowHarris(image, x0 + x, y0 + y, detector.nHarris_K);
            if (SlowRing(image, x0 + x, y0 + y, detector) && r >= detector.nHarrisThre) vMap[y * w + x] = r;
        }
    }
    std::vector<std::pair<float, int>> vFound;
    for (int y = 3; y <= h - 4; ++y) {
        for (int x = 3; x <= w - 4; ++x) {
            const float r = vMap[y * w + x];
            int nBelow = 0;
            for (int j = -3; j <= 3; ++j) {
                for (int i = -3; i <= 3; ++i) nBelow += vMap[(y + j) * w + x + i] < r ? 1 : 0;
            }
            if (r > 0 && nBelow == 48 && vFound.size() < nCapacity) vFound.emplace_back(r, y * w + x);
        }
    }
    std::sort(vFound.begin(), vFound.end());
    FeatureList vList;
    for (const auto& [r, n] : vFound) vList.push_back({x0 + n % w, y0 + n / w, r, -1});
    return vList;
}

FeaturePoint SlowRefine(const CImage& image, FeaturePoint point, int nHarrisK)
{
    std::vector<std::tuple<float, int, int>> vPlaces;
    float fBest = 0;
    for (int y = 2 * point.y - 2; y <= 2 * point.y + 2; ++y) {
        for (int x = 2 * point.x - 2; x <= 2 * point.x + 2; ++x) {
            vPlaces.emplace_back(SlowHarris(image, x, y, nHarrisK), x, y);
            fBest = std::max(fBest, std::get<0>(vPlaces.back()));
        }
    }
    int nX = 0, nY = 0, nPlaces = 0;
    for (const auto& [r, x, y] : vPlaces) {
        if (r != fBest) continue;
        nX += x;
        nY += y;
        ++nPlaces;
    }
    if (fBest == 0) return {2 * point.x, 2 * point.y, 0.0f, point.nMatch};
    return {nX / nPlaces, nY / nPlaces, fBest, point.nMatch};
}

// ---- Pictures and calls.

void Box(CImage& image, int x, int y, int w, int h, int nGrey)
{
    for (int j = std::max(y, 0); j < std::min(y + h, image.nHeight); ++j) {
        for (int i = std::max(x, 0); i < std::min(x + w, image.nWidth); ++i) {
            image.Row(j)[i] = static_cast<uint8_t>(nGrey);
        }
    }
}

// Small boxes of all greys on a ground, many of them cut by the border, under a little noise.
void DrawBoxes(std::mt19937& rng, CImage& image, int w, int h, int nNoise)
{
    const auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    FillConstant(image, w, h, 1, 120);
    for (int n = 0; n < w * h / 60 + 1; ++n) {
        Box(image, pick(-2, w), pick(-2, h), pick(1, 4), pick(1, 4), pick(0, 255));
    }
    for (size_t i = 0; i < image.Samples(); ++i) {
        image.pData[i] = static_cast<uint8_t>(std::min(std::max(image.pData[i] + pick(-nNoise, nNoise), 0), 255));
    }
}

// The list, after a look that nothing behind it was written.
FeatureList Detect(const Detector& detector, const CImage& image, int x0, int y0, int x1, int y1,
                   int nCapacity = kMaxFeatures)
{
    Guarded<FeaturePoint> room(static_cast<size_t>(nCapacity));
    int nCount = -1;
    EXPECT_TRUE(detector.Detect(image, room.Data(), nCount, nCapacity, x0, y0, x1, y1));
    EXPECT_TRUE(room.Intact());
    return FeatureList(room.Data(), room.Data() + nCount);
}

class FeaturePointDetection : public testing::Test {
protected:
    FeaturePointDetection() { m_Detector.Initialize(); }
    FeatureList DetectAll(const CImage& image, int nCapacity = kMaxFeatures)
    {
        return Detect(m_Detector, image, 0, 0, image.nWidth, image.nHeight, nCapacity);
    }
    Detector m_Detector;
};

// ---- Tests.

TEST_F(FeaturePointDetection, RingTestEqualsASlowOneForAllThresholds)
{
    std::mt19937 rng(42);
    TestImage window;
    const uint8_t* vRows[7];
    int vOutcomes[2] = {};
    for (int nRound = 0; nRound < 20000; ++nRound) {
        // Few greys near each other, so that margins and counts are met exactly.
        const int nBase = static_cast<int>(rng() % 230);
        const int nStep = 1 + static_cast<int>(rng() % 10);
        FillRandom(rng, window, 7, 7, 1, 0, 2);
        const int nCentre = static_cast<int>(rng() % 3);
        for (int i = 0; i < 49; ++i) {
            const bool bLift = rng() % 4 != 0;  // mostly on one side of the centre
            window.pData[i] = static_cast<uint8_t>(nBase + nStep * (bLift ? 2 - nCentre : window.pData[i]));
        }
        window.Row(3)[3] = static_cast<uint8_t>(nBase + nStep * nCentre);
        for (int j = 0; j < 7; ++j) vRows[j] = window.Row(j);
        m_Detector.nPtThre1 = 2 + static_cast<int>(rng() % 2);
        m_Detector.nPtThre2 = 8 + static_cast<int>(rng() % 8);
        m_Detector.nThre = static_cast<int>(rng() % 12);
        m_Detector.nRatio = static_cast<int>(rng() % 12);
        const ResponseParams params{
            m_Detector.nPtThre1, m_Detector.nPtThre2, m_Detector.nThre, m_Detector.nRatio, 1, 0.05f};
        const bool bWant = SlowRing(window, 3, 3, m_Detector);
        ASSERT_EQ(PassesRing(vRows, 0, params), bWant) << nRound;
        ++vOutcomes[bWant ? 1 : 0];
    }
    EXPECT_GT(vOutcomes[0], 2000);
    EXPECT_GT(vOutcomes[1], 2000);
}

TEST_F(FeaturePointDetection, FindsADotWithTheResponseWorkedOutByHand)
{
    TestImage image;
    FillConstant(image, 21, 18, 1, 100);
    image.Row(9)[12] = 200;
    // A = B = 2 * 24 * 100^2 / 256 = 1875, C = 0: 1875^2 - 0.05 * 3750^2.
    EXPECT_EQ(DetectAll(image), FeatureList({{12, 9, 2812500.0f, -1}}));

    m_Detector.nHarris_K = 10;  // as after a load that does not call UpdateParameter
    EXPECT_EQ(DetectAll(image), FeatureList({{12, 9, 2109375.0f, -1}}));
    EXPECT_EQ(m_Detector.m_fHarrisK, 0.05f);
    m_Detector.UpdateParameter();
    EXPECT_EQ(m_Detector.m_fHarrisK, 0.1f);
}

TEST_F(FeaturePointDetection, LeastResponseIsKept)
{
    m_Detector.nHarris_K = 10;
    TestImage image;
    FillConstant(image, 15, 15, 1, 100);
    image.Row(7)[7] = 120;
    const float r = SlowHarris(image, 7, 7, 10);
    EXPECT_EQ(r, 3375.0f);
    for (const int nThre : {3374, 3375, 3376}) {
        m_Detector.nHarrisThre = nThre;
        EXPECT_EQ(DetectAll(image).size(), nThre <= 3375 ? 1u : 0u) << nThre;
    }
}

TEST_F(FeaturePointDetection, EqualsASlowOneFromAnyNumberOfThreads)
{
    std::mt19937 rng(7);
    size_t nAll = 0;
    for (const auto& size : {std::pair(7, 7), {8, 7}, {7, 30}, {40, 33}, {97, 61}, {150, 20}}) {
        const int w = size.first, h = size.second;
        for (int nRound = 0; nRound < 6; ++nRound) {
            TestImage image;
            DrawBoxes(rng, image, w, h, nRound % 3);
            m_Detector.nPtThre1 = 2 + nRound % 2;
            m_Detector.nPtThre2 = 8 + nRound;
            m_Detector.nRatio = 4 * nRound;
            m_Detector.nHarris_K = 1 + nRound;
            m_Detector.nHarrisThre = nRound == 0 ? 1 : 3000 * nRound;
            const FeatureList vWant = SlowDetect(m_Detector, image, 0, 0, w, h, kMaxFeatures);
            nAll += vWant.size();
            ForThreads([&](int nThreads) {
                SCOPED_TRACE(testing::Message() << w << " x " << h << ", " << nThreads << " threads");
                EXPECT_EQ(DetectAll(image), vWant);
            });
        }
    }
    EXPECT_GT(nAll, 300u);
}

TEST_F(FeaturePointDetection, RectangleIsClippedAndItsSurroundingsAreSeen)
{
    std::mt19937 rng(8);
    TestImage image;
    DrawBoxes(rng, image, 64, 50, 1);
    const FeatureList vWant = SlowDetect(m_Detector, image, 10, 8, 51, 43, kMaxFeatures);
    EXPECT_GT(vWant.size(), 5u);
    ForThreads([&](int) { EXPECT_EQ(Detect(m_Detector, image, 10, 8, 51, 43), vWant); });
    EXPECT_EQ(Detect(m_Detector, image, -5, 30, 41, 90), SlowDetect(m_Detector, image, 0, 30, 41, 50, kMaxFeatures));
    EXPECT_EQ(Detect(m_Detector, image, 62, 0, 90, 50), FeatureList());
    EXPECT_EQ(Detect(m_Detector, image, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX), DetectAll(image));
}

TEST_F(FeaturePointDetection, EmptyRectangleFails)
{
    std::mt19937 rng(9);
    TestImage image, empty;
    DrawBoxes(rng, image, 30, 30, 0);
    const int vRects[][4] = {{5, 5, 5, 20},   {5, 5, 20, 5},     {20, 5, 5, 20},
                             {30, 0, 60, 30}, {-20, -20, 0, 30}, {INT32_MAX, 0, INT32_MIN, 30}};
    FeaturePoint point;
    for (const auto& r : vRects) {
        int nCount = 9;
        EXPECT_FALSE(m_Detector.Detect(image, &point, nCount, 1, r[0], r[1], r[2], r[3]));
        EXPECT_EQ(nCount, 0);
    }
    int nCount = 9;
    EXPECT_FALSE(m_Detector.Detect(empty, &point, nCount, 1, 0, 0, 10, 10));
    EXPECT_EQ(nCount, 0);
}

TEST_F(FeaturePointDetection, FlatAndTinyPicturesHaveNoFeaturesAndSucceed)
{
    TestImage image;
    std::mt19937 rng(10);
    FillConstant(image, 50, 40, 1, 77);
    EXPECT_EQ(DetectAll(image), FeatureList());
    for (int h = 1; h <= 8; ++h) {
        for (int w = 1; w <= 8; ++w) {
            FillRandom(rng, image, w, h, 1, 0, 255);
            ForThreads([&](int) { EXPECT_EQ(DetectAll(image), SlowDetect(m_Detector, image, 0, 0, w, h, 10)); });
        }
    }
}

TEST_F(FeaturePointDetection, EqualNeighboursRejectEachOther)
{
    for (int nDistance = 1; nDistance <= 6; ++nDistance) {
        TestImage image;
        FillConstant(image, 30, 30, 1, 60);
        image.Row(12)[10] = image.Row(12 + nDistance)[10] = 200;
        const FeatureList vList = DetectAll(image);
        EXPECT_EQ(vList, SlowDetect(m_Detector, image, 0, 0, 30, 30, 10));
        if (nDistance != 4) {
            EXPECT_EQ(vList.size(), nDistance < 4 ? 0u : 2u) << nDistance;
        }
    }
}

TEST_F(FeaturePointDetection, ListRisesAndEqualResponsesKeepTheOrderOfTheRaster)
{
    TestImage image;
    FillConstant(image, 60, 40, 1, 60);
    for (const auto& [x, y] : {std::pair(40, 10), {10, 10}, {25, 30}}) image.Row(y)[x] = 160;
    image.Row(10)[25] = 250;
    image.Row(30)[50] = 130;
    const FeatureList vList = DetectAll(image);
    ASSERT_EQ(vList.size(), 5u);
    const int vWant[5][2] = {{50, 30}, {10, 10}, {40, 10}, {25, 30}, {25, 10}};
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(vList[i].x, vWant[i][0]) << i;
        EXPECT_EQ(vList[i].y, vWant[i][1]) << i;
    }
}

TEST_F(FeaturePointDetection, DensestCornersAllFindRoom)
{
    TestImage image;
    FillConstant(image, 39, 27, 1, 60);
    for (int y = 3; y < 24; y += 4) {
        for (int x = 3; x < 36; x += 4) image.Row(y)[x] = 200;
    }
    ForThreads([&](int) { EXPECT_EQ(DetectAll(image).size(), 9u * 6u); });
}

TEST_F(FeaturePointDetection, FullListKeepsTheFirstOfTheRasterNotTheStrongest)
{
    TestImage image;
    FillConstant(image, 96, 80, 1, 20);
    int nDots = 0;
    for (int y = 6; y < 76; y += 10) {
        for (int x = 6; x < 90; x += 10) image.Row(y)[x] = static_cast<uint8_t>(90 + 2 * nDots++);
    }
    ASSERT_EQ(DetectAll(image).size(), static_cast<size_t>(nDots));
    for (const int nCapacity : {0, 1, 5, 20, nDots - 1, nDots, nDots + 1}) {
        const size_t nRoom = static_cast<size_t>(nCapacity);
        const FeatureList vWant = SlowDetect(m_Detector, image, 0, 0, 96, 80, nRoom);
        ForThreads([&](int nThreads) {
            SCOPED_TRACE(testing::Message() << "room for " << nCapacity << ", " << nThreads << " threads");
            EXPECT_EQ(DetectAll(image, nCapacity), vWant);
        });
    }
}

TEST_F(FeaturePointDetection, RefinementEqualsASlowOneAlsoPastTheBorder)
{
    std::mt19937 rng(11);
    int nMoved = 0;
    for (const auto& size : {std::pair(1, 1), {3, 5}, {11, 11}, {60, 47}}) {
        const int w = size.first, h = size.second;
        TestImage image;
        DrawBoxes(rng, image, w, h, 2);
        m_Detector.nHarris_K = 1 + w % 10;
        FeatureList vStart, vWant;
        for (int y = -2; y <= h / 2 + 2; ++y) {
            for (int x = -2; x <= w / 2 + 2; ++x) vStart.push_back({x, y, 5.0f, x + y});
        }
        for (const FeaturePoint& point : vStart) {
            vWant.push_back(SlowRefine(image, point, m_Detector.nHarris_K));
            nMoved += vWant.back().x != 2 * point.x ? 1 : 0;
        }
        ForThreads([&](int) {
            FeatureList vList = vStart;
            m_Detector.RefineLevel(image, vList.data(), static_cast<int>(vList.size()));
            EXPECT_EQ(vList, vWant) << w << " x " << h;
        });
    }
    EXPECT_GT(nMoved, 200);
}

TEST_F(FeaturePointDetection, RefinementAveragesEqualPeaks)
{
    TestImage image;
    FillConstant(image, 40, 40, 1, 50);
    Box(image, 20, 20, 2, 2, 200);  // peaks alike in all four samples
    const float fPeak = SlowHarris(image, 20, 20, 5);
    FeatureList vList = {{10, 10, 0, 3}, {10, 11, 0, 4}, {11, 10, 0, -1}};
    m_Detector.RefineLevel(image, vList.data(), 3);
    EXPECT_EQ(vList, FeatureList({{20, 20, fPeak, 3}, {20, 20, fPeak, 4}, {20, 20, fPeak, -1}}));

    FillConstant(image, 40, 40, 1, 50);  // two peaks side by side: 41 / 2
    Box(image, 20, 20, 2, 1, 200);
    vList = {{10, 10, 0, -1}};
    m_Detector.RefineLevel(image, vList.data(), 1);
    EXPECT_EQ(vList, FeatureList({{20, 20, SlowHarris(image, 21, 20, 5), -1}}));

    FillConstant(image, 40, 40, 1, 50);  // two dots at the ends of the search: the flat place between them
    image.Row(20)[20] = image.Row(20)[24] = 200;
    vList = {{11, 10, 0, -1}};
    m_Detector.RefineLevel(image, vList.data(), 1);
    EXPECT_EQ(vList, FeatureList({{22, 20, SlowHarris(image, 20, 20, 5), -1}}));
}

TEST_F(FeaturePointDetection, WithoutAPositiveResponseTheDoubledPlaceStays)
{
    TestImage image, empty;
    FillConstant(image, 20, 20, 1, 50);
    Box(image, 10, 0, 10, 20, 200);  // an edge: no corner, a response below 0
    const FeatureList vStart = {{5, 5, 7.0f, 2}, {1, 1, 7.0f, -1}};
    for (const CImage* pImage : {static_cast<CImage*>(&image), static_cast<CImage*>(&empty)}) {
        FeatureList vList = vStart;
        m_Detector.RefineLevel(*pImage, vList.data(), 2);
        EXPECT_EQ(vList, FeatureList({{10, 10, 0.0f, 2}, {2, 2, 0.0f, -1}}));
        m_Detector.RefineLevel(*pImage, nullptr, 0);
    }
}

}  // namespace

}  // namespace vkr
