#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>

#include "face/average_pooling_down_scale_filter.h"
#include "face/face_search.h"
#include "face/rotate_image.h"
#include "foundation/image_scope.h"
#include "foundation/timing.h"

// The search at the working size of 12 megapixels. That with the network needs the model in the working directory.
namespace vkr {

namespace {

bool FillNoise(CImage& image)
{
    std::minstd_rand rng(3);
    if (!image.Allocate(2000, 1500)) return false;
    for (size_t i = 0; i < image.Samples(); ++i) image.pData[i] = static_cast<uint8_t>(rng() >> 8);
    return true;
}

// fnRun(reference, out), timed.
template <class Fn>
void RunOnReference(benchmark::State& state, const Fn& fnRun)
{
    CImage reference{}, out{};
    ImageScope referenceScope(reference);
    ImageScope outScope(out);
    if (!FillNoise(reference)) return state.SkipWithError("no memory");
    g_bProfileEnable = 0;
    for (auto _ : state) {
        fnRun(reference, out);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * reference.nWidth * reference.nHeight);
}

void BM_RotateUpright(benchmark::State& state)
{
    RunOnReference(state, [&](const CImage& reference, CImage& out) {
        RotateUpright(reference, static_cast<int>(state.range(0)), out);
    });
}
BENCHMARK(BM_RotateUpright)->DenseRange(1, 3)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ApplyDownScale(benchmark::State& state)
{
    RunOnReference(state, [](const CImage& reference, CImage& out) {
        CAveragePoolingDownScaleFilter::ApplyDownScale(reference, out, 2);
    });
}
BENCHMARK(BM_ApplyDownScale)->Unit(benchmark::kMillisecond)->UseRealTime();

// With the load of the model and the network.
void BM_SearchFace(benchmark::State& state)
{
    std::FILE* pModel = std::fopen(kFaceModelPath, "rb");
    if (pModel == nullptr) return state.SkipWithError("no model in the working directory");
    std::fclose(pModel);
    RunOnReference(state, [&](const CImage& reference, CImage&) {
        SearchFace(reference, static_cast<int>(state.range(0)), 0, {}, FaceParams{}, {});
    });
}
BENCHMARK(BM_SearchFace)->DenseRange(0, 3)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

}  // namespace vkr
