#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <utility>
#include <vector>

#include "align/init_match.h"
#include "align/refine_match.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

using Features = std::vector<FeaturePoint>;
using Samples81 = std::vector<int>;

// Second, slow writings of both searches; they share nothing with the library.
Samples81 ClampedSamples(const CImage& image, int x, int y)
{
    Samples81 v;
    for (int n = 0; n < 81; ++n) {
        const int i = std::clamp(x + n % 9 - 4, 0, image.nWidth - 1);
        v.push_back(image.pData[std::clamp(y + n / 9 - 4, 0, image.nHeight - 1) * image.nWidth + i]);
    }
    return v;
}

Samples81 MemorySamples(const CImage& image, int x, int y)
{
    Samples81 v;
    for (int n = 0; n < 81; ++n) {
        const int nRow = std::min(std::max(y - 4, 0) + n / 9, image.nHeight - 1);
        const int nAt = nRow * image.nWidth + x + n % 9 - 4;
        v.push_back(image.pData[std::clamp(nAt, 0, image.nWidth * image.nHeight - 1)]);
    }
    return v;
}

int SSD(const Samples81& a, const Samples81& b)
{
    int n = 0;
    for (size_t i = 0; i < a.size(); ++i) n += (a[i] - b[i]) * (a[i] - b[i]);
    return n;
}

struct SlowMatcher {
    const CImage &first, &second;
    const Features &vFirst, &vSecond;
    InitMatchParams params;
    int dx, dy;
    int vLeft[5] = {};  // features that ended without a partner, at the backward search, at each dense one; pairs

    int Scale() const { return 1 << params.nFeatureMatchLevel; }

    std::vector<int> Map(const CImage& image, const Features& vFeatures) const
    {
        std::vector<int> vMap(image.Samples(), -1);
        for (size_t k = 0; k < vFeatures.size(); ++k) {
            const int x = std::clamp(vFeatures[k].x / Scale(), 0, image.nWidth - 1);
            vMap[std::clamp(vFeatures[k].y / Scale(), 0, image.nHeight - 1) * image.nWidth + x] = static_cast<int>(k);
        }
        return vMap;
    }
    // Calls fn(x, y) over the window.
    template <class Fn>
    void Window(const CImage& image, int x, int y, const Fn& fn) const
    {
        for (int j = 0; j < image.nHeight; ++j) {
            for (int i = 0; i < image.nWidth; ++i) {
                if (std::abs(i - x) <= params.nMaxSearchX && std::abs(j - y) <= params.nMaxSearchY) fn(i, j);
            }
        }
    }
    // Whether the best place of the window around (x, y) is near (xAt, yAt), where the search starts.
    bool Dense(const CImage& image, const Samples81& patch, int x, int y, int xAt, int yAt, int& nBest) const
    {
        int xBest = xAt, yBest = yAt;
        Window(image, x, y, [&](int i, int j) {
            const int n = SSD(patch, MemorySamples(image, i, j));
            if (n < nBest) nBest = n, xBest = i, yBest = j;
        });
        return std::abs(xBest - xAt) <= params.nInitMatchThreX && std::abs(yBest - yAt) <= params.nInitMatchThreY;
    }
    std::pair<int, int> Decide(int i, const std::vector<int>& vMapA, const std::vector<int>& vMapB) const
    {
        const int xa = vFirst[i].x / Scale(), ya = vFirst[i].y / Scale();
        const Samples81 patchA = ClampedSamples(first, xa, ya);
        int nBest = 0x1000000, j = -1;
        Window(second, xa + dx, ya + dy, [&](int x, int y) {
            const int k = vMapB[y * second.nWidth + x];
            const int n = k < 0 ? 0x1000000 : SSD(patchA, MemorySamples(second, x, y));
            if (n < nBest) nBest = n, j = k;
        });
        if (j < 0) return {-1, 0};
        const int xb = vSecond[j].x / Scale(), yb = vSecond[j].y / Scale();
        const Samples81 patchB = ClampedSamples(second, xb, yb);
        bool bBeaten = false;
        Window(first, xb - dx, yb - dy, [&](int x, int y) {
            const int k = vMapA[y * first.nWidth + x];
            bBeaten |= k >= 0 && k != i && SSD(patchB, MemorySamples(first, x, y)) < nBest;
        });
        if (bBeaten) return {-1, 1};
        if (!Dense(first, patchB, xb - dx, yb - dy, xa, ya, nBest)) return {-1, 2};
        if (!Dense(second, patchA, xa + dx, ya + dy, xb, yb, nBest)) return {-1, 3};
        return {j, 4};
    }
    std::vector<int> Partners()
    {
        const std::vector<int> vMapA = Map(first, vFirst), vMapB = Map(second, vSecond);
        std::vector<int> vPartners;
        for (size_t i = 0; i < vFirst.size(); ++i) {
            const auto [j, nLeftAt] = Decide(static_cast<int>(i), vMapA, vMapB);
            vPartners.push_back(j);
            ++vLeft[nLeftAt];
        }
        return vPartners;
    }
};

bool SlowTrack(const CImage* pFrom, FeaturePoint from, const CImage* pTo, FeaturePoint start, int nTop, int nThreX,
               int nThreY, FeaturePoint& end)
{
    end = start;
    if (nTop >= 0) end.x /= 1 << nTop, end.y /= 1 << nTop;
    for (int l = nTop; l >= 0; --l) {
        const Samples81 patch = ClampedSamples(pFrom[l], from.x / (1 << l), from.y / (1 << l));
        const FeaturePoint at = end;
        int nBest = 0x1000000;
        for (int i = 0; i < 25; ++i) {
            const int x = at.x + i % 5 - 2, y = at.y + i / 5 - 2;
            const int n = SSD(patch, ClampedSamples(pTo[l], x, y));
            if (n < nBest) nBest = n, end.x = x, end.y = y;
        }
        if (l > 0) end.x *= 2, end.y *= 2;
    }
    return std::abs(end.x - start.x) <= nThreX && std::abs(end.y - start.y) <= nThreY;
}

Features RandomFeatures(std::mt19937& rng, int nCount, int w, int h)
{
    const std::vector<int> vX = RandomRow<int>(rng, nCount, -12, w + 12), vY = RandomRow<int>(rng, nCount, -12, h + 12);
    Features vFeatures;
    for (int i = 0; i < nCount; ++i) vFeatures.push_back({vX[i], vY[i], static_cast<float>(rng() % 9), 7});
    return vFeatures;
}

// A match list with its memory, filled with vA[i] and vB[i].
struct Matches : MatchList {
    FeaturePoint vA[kMaxFeatures], vB[kMaxFeatures];
    Matches(const Features& vFirst, const Features& vSecond)
        : MatchList{vA, vB, static_cast<int>(std::min(vFirst.size(), vSecond.size()))}
    {
        std::copy_n(vFirst.begin(), nCount, vA);
        std::copy_n(vSecond.begin(), nCount, vB);
    }
};

bool SamePoint(const FeaturePoint& a, const FeaturePoint& b)
{
    return a.x == b.x && a.y == b.y && a.fResponse == b.fResponse;
}

// Compares FindInitMatchPair with the slow form, then adds where the features were left.
void CheckInitMatch(const CImage& first, const CImage& second, const Features& vFirst, const Features& vSecond,
                    const InitMatchParams& params, int dx, int dy, int (&vLeft)[5])
{
    SlowMatcher slow{first, second, vFirst, vSecond, params, dx, dy};
    const std::vector<int> vWant = slow.Partners();
    for (int i = 0; i < 5; ++i) vLeft[i] += slow.vLeft[i];
    ForThreads([&](int) {
        Features vA = vFirst, vB = vSecond;
        Matches matches({}, {});
        const bool bEnough =
            FindInitMatchPair({first, vA.data(), static_cast<int>(vA.size())},
                              {second, vB.data(), static_cast<int>(vB.size())}, params, dx, dy, matches);
        int nPairs = 0;
        for (int i = 0; i < static_cast<int>(vA.size()); ++i) {
            ASSERT_EQ(vA[i].nMatch, vWant[i]) << i;
            if (vWant[i] < 0) continue;
            EXPECT_TRUE(SamePoint(matches.vA[nPairs], vA[i]) && SamePoint(matches.vB[nPairs], vB[vWant[i]]));
            EXPECT_GE(vB[vWant[i]].nMatch, i);  // the last one to choose it
            ++nPairs;
        }
        EXPECT_EQ(matches.nCount, nPairs);
        EXPECT_EQ(bEnough, nPairs >= params.nMinFeatureNum);
    });
}

// The picture moved by (dx, dy) with some samples changed.
void Disturb(std::mt19937& rng, const CImage& src, CImage& dst, int dx, int dy, int nMax)
{
    FillRandom(rng, dst, src.nWidth, src.nHeight, 1, 0, nMax);
    for (int y = 0; y < src.nHeight; ++y) {
        for (int x = 0; x < src.nWidth; ++x) {
            const bool bInside = x >= dx && x - dx < src.nWidth && y >= dy && y - dy < src.nHeight;
            if (bInside && rng() % 16 != 0) dst.Row(y)[x] = src.Row(y - dy)[x - dx];
        }
    }
}

TEST(FindInitMatchPair, EqualsTheSlowFormEverywhere)
{
    std::mt19937 rng(43);
    int vLeft[5] = {};
    const int vSizes[][2] = {{1, 1}, {3, 2}, {5, 30}, {9, 9}, {33, 8}, {47, 31}};
    const int vWindows[][2] = {{1, 0}, {2, 3}, {6, 6}, {20, 9}, {256, 256}};
    for (const auto& size : vSizes) {
        for (const auto& window : vWindows) {
            for (const int nMax : {0, 2, 255}) {  // flat and nearly flat ones have ties and zeros
                const int nLevel = static_cast<int>(rng() % 4), dx = static_cast<int>(rng() % 3), dy = nMax % 2;
                const InitMatchParams params{nLevel,       window[0], window[1], 1 + static_cast<int>(rng() % 4),
                                             1 + nMax % 3, 5};
                TestImage first, second;
                FillRandom(rng, first, size[0], size[1], 1, 255 - nMax, 255);
                Disturb(rng, first, second, dx, dy, nMax);
                const int nCount = 1 + size[0] * size[1] / 8;
                Features vA = RandomFeatures(rng, nCount, size[0] << nLevel, size[1] << nLevel), vB = vA;
                for (FeaturePoint& b : vB) b.x += (dx << nLevel) + static_cast<int>(rng() % 3) - 1, b.y += dy << nLevel;
                std::shuffle(vB.begin(), vB.end(), rng);
                CheckInitMatch(first, second, vA, vB, params, dx, dy, vLeft);
                CheckInitMatch(first, first, vA, vB, params, 0, 0, vLeft);
            }
        }
    }
    for (const int nLeft : vLeft) EXPECT_GT(nLeft, 50);  // every decision was met
}

TEST(FindInitMatchPair, TakesWhatIsMissingAndFarAway)
{
    std::mt19937 rng(44);
    TestImage image, none;
    FillRandom(rng, image, 40, 30, 1, 0, 255);
    const InitMatchParams params{3, 20, 20, 2, 2, 0};
    Features vA = RandomFeatures(rng, 9, 320, 240), vB = vA;
    Matches matches({}, {});
    EXPECT_FALSE(FindInitMatchPair({none, vA.data(), 9}, {none, vB.data(), 9}, params, 0, 0, matches));
    EXPECT_EQ(vA[8].nMatch, -1);
    EXPECT_TRUE(FindInitMatchPair({image, vA.data(), 9}, {image, nullptr, 0}, params, 0, 0, matches));
    EXPECT_TRUE(FindInitMatchPair({image, nullptr, 0}, {image, vB.data(), 9}, params, 0, 0, matches));
    vA[0].x = vB[1].x = INT32_MAX, vA[2].y = vB[3].y = INT32_MIN;
    for (const int nOffset : {INT32_MAX, INT32_MIN}) {
        FindInitMatchPair({image, vA.data(), 9}, {image, vB.data(), 9}, params, nOffset, nOffset, matches);
        EXPECT_EQ(matches.nCount, 0);
    }
    Matches far(vA, vB);
    RefineMatchPair(&image, &image, 1, {1, 4, 4, 8}, far);
    EXPECT_EQ(far.nCount, 9);  // one level moves by 2 at most
}

// Three levels of noise; the second pyramid lies (8, 4) further.
struct Pyramids {
    TestImage vFirst[3], vSecond[3];
    CImage vA[3], vB[3];  // borrowed records, in a row
    Pyramids(std::mt19937& rng, int w, int h, int nMax)
    {
        for (int l = 0; l < 3; ++l) {
            FillRandom(rng, vFirst[l], 1 + (w >> l), 1 + (h >> l), 1, 0, nMax);
            Disturb(rng, vFirst[l], vSecond[l], 8 >> l, 4 >> l, nMax);
            vA[l] = vFirst[l], vB[l] = vSecond[l];
        }
    }
};

TEST(RefineMatchPair, EqualsTheSlowFormAndFindsAShift)
{
    std::mt19937 rng(45);
    int nKept = 0, nDropped = 0, nExact = 0;
    for (int nRun = 0; nRun < 40; ++nRun) {
        const int w = nRun < 25 ? nRun : 90, h = nRun < 10 ? 10 - nRun : nRun + 3, nMatchLevel = nRun % 5;
        const Pyramids p(rng, w, h, nRun % 2 ? 255 : 2);
        const RefineMatchParams params{nMatchLevel, 1 + nRun % 12, 1 + nRun % 7, 30};
        Features vA = RandomFeatures(rng, 80, w, h), vB = RandomFeatures(rng, 80, w, h);
        for (int i = 0; i < 60; ++i) vB[i].x = vA[i].x + 6 + i % 4, vB[i].y = vA[i].y + 3 + i % 3;
        for (int i = 60; i < 80; ++i) vB[i] = {w - 6 + i % 2, h / 2, -1, 7};  // blocks that just fit or just do not
        Features vWant[2];
        for (int i = 0; i < 80; ++i) {
            const bool bForth = vA[i].fResponse > vB[i].fResponse;
            FeaturePoint a = vA[i], b = vB[i], &strong = bForth ? a : b, &weak = bForth ? b : a, end{}, back{};
            const CImage *pStrong = bForth ? p.vA : p.vB, *pWeak = bForth ? p.vB : p.vA;
            const int nTop = std::min(nMatchLevel, 3) - 1, tx = params.nRefineMatchThreX, ty = params.nRefineMatchThreY;
            const bool bKeep = SlowTrack(pStrong, strong, pWeak, weak, nTop, tx, ty, end) &&
                               SlowTrack(pWeak, weak, pStrong, strong, nTop, tx, ty, back);
            ++(bKeep ? nKept : nDropped);
            if (!bKeep) continue;
            weak.x = end.x, weak.y = end.y;
            nExact += b.x - a.x == 8 && b.y - a.y == 4 && nMatchLevel > 0 ? 1 : 0;
            vWant[0].push_back(a), vWant[1].push_back(b);
        }
        ForThreads([&](int) {
            Matches matches(vA, vB);
            EXPECT_EQ(RefineMatchPair(p.vA, p.vB, 3, params, matches), vWant[0].size() >= 30);
            ASSERT_EQ(matches.nCount, static_cast<int>(vWant[0].size()));
            for (int i = 0; i < matches.nCount; ++i) {
                ASSERT_TRUE(SamePoint(matches.vA[i], vWant[0][i]) && SamePoint(matches.vB[i], vWant[1][i])) << i;
            }
        });
    }
    EXPECT_GT(nKept, 500);
    EXPECT_GT(nDropped, 500);
    EXPECT_GT(nExact, 300);
}

}  // namespace
}  // namespace vkr
