#include "face/face_intensity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "face/box_runs.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {
namespace {

// The boxes by the book: every row clamped by itself, every column where it lies in memory.
std::map<int64_t, int64_t> SlowCounts(const FaceBox& box, int w, int h)
{
    std::map<int64_t, int64_t> counts;
    for (int y = box.y1; y <= box.y2; ++y) {
        for (int x = box.x1; x <= box.x2; ++x) {
            const int64_t n = int64_t{std::clamp(y, 0, h - 1)} * w + x;
            if (n >= 0 && n < int64_t{w} * h) ++counts[n];
        }
    }
    return counts;
}

std::map<int64_t, int64_t> RunCounts(const FaceBox& box, int w, int h)
{
    std::map<int64_t, int64_t> counts;
    VisitBoxRuns(box, w, h, [&](int64_t nBegin, int64_t nEnd, int64_t nTimes) {
        EXPECT_GE(nTimes, 1);
        for (int64_t n = nBegin; n < nEnd; ++n) EXPECT_TRUE(counts.emplace(n, nTimes).second) << n;
    });
    return counts;
}

TEST(BoxRuns, CountEveryPixelAsOftenAsTheBoxHoldsIt)
{
    std::mt19937 rng(64);
    std::uniform_int_distribution<int> pick(-14, 20);
    for (const int w : {1, 4, 7}) {
        for (const int h : {1, 2, 5}) {
            for (int i = 0; i < 400; ++i) {
                const FaceBox box = {pick(rng), pick(rng), pick(rng), pick(rng)};
                ASSERT_EQ(RunCounts(box, w, h), SlowCounts(box, w, h))
                    << w << "x" << h << ": " << box.x1 << " " << box.y1 << " " << box.x2 << " " << box.y2;
            }
        }
    }
}

TEST(BoxRuns, StayInThePictureForAnyBox)
{
    const int32_t nFar = INT32_MAX;
    const auto all = RunCounts({-nFar - 1, -nFar - 1, nFar, nFar}, 5, 3);
    EXPECT_EQ(all.size(), 15U);
    EXPECT_EQ(all.at(7), 2 * kMostRowsOutside + 3);
    EXPECT_EQ(RunCounts({0, nFar - 1, 1, nFar}, 5, 3), (std::map<int64_t, int64_t>{{10, 1}, {11, 1}}));
    EXPECT_TRUE(RunCounts({nFar, 0, nFar, 2}, 5, 3).empty());
    EXPECT_TRUE(RunCounts({1, 2, 0, 3}, 5, 3).empty());
}

FaceParams Rates(int32_t nDark, int32_t nBright)
{
    FaceParams params;
    params.nBrightDarkFaceThres = 1000;
    params.nFaceHistDropLowLightRate = nDark;
    params.nFaceHistDropHighLightRate = nBright;
    return params;
}

bool SlowSkin(int b, int g, int r)
{
    const int nMost = std::max(b, std::max(g, r)), nLeast = std::min(b, std::min(g, r));
    if (nMost - nLeast < 16) return false;
    if (r - g < 16) return false;  // red is to be the larger anyway
    return r > b;
}

// Component c of the skin pixels, in ascending order.
template <class Pixels>
std::vector<int> SkinLevels(const Pixels& vPixels, int c)
{
    std::vector<int> vLevels;
    for (const auto& p : vPixels) {
        if (SlowSkin(p[0], p[1], p[2])) vLevels.push_back(p[static_cast<size_t>(c)]);
    }
    std::sort(vLevels.begin(), vLevels.end());
    return vLevels;
}

TEST(ReferenceFace, LevelsAndMediansAreThoseOfTheSortedSkin)
{
    LinesScope lines;
    std::mt19937 rng(65);
    TestImage image;
    FillRandom(rng, image, 23, 11, 3, 80, 130);  // near enough for every rule of skin to decide
    std::vector<std::array<int, 3>> vBox;
    for (int y = 2; y <= 9; ++y) {
        for (int x = 3; x <= 20; ++x) {
            const uint8_t* p = image.Row(y) + 3 * x;
            vBox.push_back({p[0], p[1], p[2]});
        }
    }
    for (const int nRate : {0, 10, 33, 99}) {
        FaceIntensity levels, medians;
        int32_t bBrightDark = 0;
        GetReferenceFaceIntensity({3, 2, 20, 9}, image, Rates(nRate, nRate / 2), {1, 0}, levels, bBrightDark);
        GetReferenceFaceIntensity({3, 2, 20, 9}, image, Rates(nRate, nRate / 2), {0, 0}, medians, bBrightDark);
        for (int c = 0; c < 3; ++c) {
            const std::vector<int> vSkin = SkinLevels(vBox, c);
            const size_t n = vSkin.size(), nDark = n * static_cast<size_t>(nRate) / 100;
            ASSERT_GT(n, 20U);
            EXPECT_EQ(levels.vLow[c], vSkin[nDark]);
            EXPECT_EQ(levels.vHigh[c], vSkin[n - 1 - n * static_cast<size_t>(nRate / 2) / 100]);
            EXPECT_EQ(medians.vLow[c], vSkin[n / 2]);
        }
        EXPECT_EQ(bBrightDark, 0);
    }
    FaceIntensity kept = {{1, 2, 3}, {4, 5, 6}};  // all dropped: nothing is told
    int32_t bBrightDark = 0;
    GetReferenceFaceIntensity({3, 2, 20, 9}, image, Rates(100, 100), {1, 0}, kept, bBrightDark);
    EXPECT_EQ(kept.vLow[0] * 100 + kept.vHigh[2], 106);
}

TEST(ReferenceFace, OnlyALargerSpreadThanTheLimitIsTooMuch)
{
    LinesScope lines;
    TestImage image;
    FillConstant(image, 2, 1, 3, 40);
    image.pData[2] = 100;
    const uint8_t vBright[3] = {90, 90, 150};
    std::copy_n(vBright, 3, image.pData + 3);
    FaceParams params = Rates(0, 0);
    for (const int nLimit : {150, 149}) {
        params.nBrightDarkFaceThres = nLimit;
        FaceIntensity face;
        int32_t bBrightDark = 0;
        GetReferenceFaceIntensity({0, 0, 1, 0}, image, params, {0, 1}, face, bBrightDark);
        EXPECT_EQ(bBrightDark, nLimit == 149);
        EXPECT_EQ(face.vLow[2], nLimit == 149 ? 100 : 150);  // the low level stays, or the median
        EXPECT_EQ(FaceBrightness(face, 1), face.vLow[2]);
    }
    EXPECT_TRUE(lines.Contains("x1 = 0, y1 = 0, x2 = 1, y2 = 0\nReference Face Low  Intensity = [40,40,100]\n"));
    EXPECT_TRUE(lines.Contains("!!!Bright Dark Face!!!"));
}

TEST(FusionFace, MeasuresTheLowByteAboveTheBlackLevel)
{
    LinesScope lines;
    std::mt19937 rng(66);
    TestShortImage fused;
    FillRandom(rng, fused, 31, 17, 6, -600, 600);
    for (const int nBlack : {-200, 0, 32, 255}) {
        std::vector<std::array<int, 3>> vInside;
        for (size_t i = 0; i < fused.Samples(); i += 6) {
            std::array<int, 3> p{};
            for (size_t c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>(fused.pData[i + c]) - nBlack;
            if (*std::min_element(p.begin(), p.end()) > 0) vInside.push_back(p);
        }
        FaceIntensity median = {{7, 7, 7}, {7, 7, 7}}, levels = median;
        GetFusionFaceIntensity({0, 0, 30, 16}, fused, nBlack, Rates(10, 10), {0, 1}, 0, median);
        GetFusionFaceIntensity({0, 0, 30, 16}, fused, nBlack, Rates(10, 100), {0, 1}, 1, levels);
        for (int c = 0; c < 3; ++c) {
            const std::vector<int> vSkin = SkinLevels(vInside, c);
            const auto Known = [&](size_t n) { return n < vSkin.size() && vSkin[n] < 256 ? vSkin[n] : 7; };
            EXPECT_EQ(median.vLow[c], Known(vSkin.size() / 2)) << nBlack;
            EXPECT_EQ(levels.vLow[c], Known(vSkin.size() * 10 / 100)) << nBlack;
            EXPECT_EQ(levels.vHigh[c], 7);
        }
    }
    EXPECT_TRUE(lines.Contains("FaceIntensity R:"));
}

}  // namespace
}  // namespace vkr
