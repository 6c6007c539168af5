#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "align/init_match.h"
#include "align/refine_match.h"
#include "foundation/image.h"

// What pairs the corners of two frames: the whole first match, the tracks.
namespace vkr {

namespace {

// Soft grain, as a coarse level of a photograph has it.
void FillGrain(CImage& image, int nWidth, int nHeight)
{
    std::minstd_rand rng(7);
    if (!image.AllocateGray(nWidth, nHeight)) return;
    int nGrey = 128;
    for (size_t i = 0; i < image.Samples(); ++i) {
        nGrey = (7 * nGrey + static_cast<int>(rng() >> 8 & 255)) / 8;
        image.pData[i] = static_cast<uint8_t>(nGrey);
    }
}

std::vector<FeaturePoint> Scatter(int nCount, int nWidth, int nHeight)
{
    std::minstd_rand rng(9);
    std::vector<FeaturePoint> vFeatures(static_cast<size_t>(nCount));
    for (FeaturePoint& feature : vFeatures) {
        feature = {static_cast<int32_t>(rng() % static_cast<uint32_t>(nWidth)),
                   static_cast<int32_t>(rng() % static_cast<uint32_t>(nHeight)), static_cast<float>(rng() % 100), -1};
    }
    return vFeatures;
}

// The same features, up to nMove away.
std::vector<FeaturePoint> Moved(std::vector<FeaturePoint> vFeatures, int nMove)
{
    std::minstd_rand rng(11);
    for (FeaturePoint& feature : vFeatures) {
        feature.x += static_cast<int32_t>(rng() % static_cast<uint32_t>(2 * nMove + 1)) - nMove;
        feature.y += static_cast<int32_t>(rng() % static_cast<uint32_t>(2 * nMove + 1)) - nMove;
    }
    return vFeatures;
}

struct Lists {
    std::vector<FeaturePoint> vA{static_cast<size_t>(kMaxFeatures)}, vB{static_cast<size_t>(kMaxFeatures)};
    MatchList matches;
    Lists() : matches{vA.data(), vB.data(), 0} {}
};

void BM_FindInitMatchPair(benchmark::State& state)
{
    CImage image{};
    FillGrain(image, 500, 375);
    std::vector<FeaturePoint> vA = Scatter(static_cast<int>(state.range(0)), 4000, 3000), vB = Moved(vA, 16);
    const int nCount = static_cast<int>(vA.size()), nWindow = static_cast<int>(state.range(1));
    const InitMatchParams params{3, nWindow, nWindow, 2, 2, 8};
    const auto lists = std::make_unique<Lists>();
    for (auto _ : state) {
        FindInitMatchPair({image, vA.data(), nCount}, {image, vB.data(), nCount}, params, 0, 0, lists->matches);
    }
    state.counters["pairs"] = lists->matches.nCount;
    image.Release();
}

void BM_RefineMatchPair(benchmark::State& state)
{
    CImage vLevels[3] = {};
    for (int l = 0; l < 3; ++l) FillGrain(vLevels[l], 4000 >> l, 3000 >> l);
    const std::vector<FeaturePoint> vA = Scatter(static_cast<int>(state.range(0)), 4000, 3000), vB = Moved(vA, 4);
    const auto lists = std::make_unique<Lists>();
    for (auto _ : state) {
        lists->vA.assign(vA.begin(), vA.end());
        lists->vB.assign(vB.begin(), vB.end());
        lists->matches.nCount = static_cast<int>(vA.size());
        RefineMatchPair(vLevels, vLevels, 3, {3, 4, 4, 8}, lists->matches);
    }
    state.counters["pairs"] = lists->matches.nCount;
    for (CImage& level : vLevels) level.Release();
}

}  // namespace

// Arguments: features, half side of the window.
BENCHMARK(BM_FindInitMatchPair)
    ->Name("FindInitMatchPair")
    ->Args({3000, 20})
    ->Args({8192, 20})
    ->Args({8192, 256})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RefineMatchPair)->Name("RefineMatchPair")->Arg(3000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace vkr
