#include "foundation/colour.h"

#include <benchmark/benchmark.h>

#include <random>

#include "foundation/image_scope.h"
#include "foundation/yuv_convert.h"

namespace vkr {
namespace {

// Pictures of 3 megapixels, the size of a working frame. Any bytes will do: no conversion branches on its samples.
constexpr int kWidth = 2000, kHeight = 1500;

void FillRandom(uint8_t* pData, size_t nBytes)
{
    std::mt19937 rng(2);
    for (size_t i = 0; i < nBytes; ++i) pData[i] = static_cast<uint8_t>(rng() >> 24);
}

void CountPixels(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}

// The result of one run is the picture of the next.
template <void (*Convert)(CImage&, int)>
void BM_InPlace(benchmark::State& state)
{
    CImage image{};
    ImageScope<CImage> scope(image);
    if (!image.Allocate(kWidth, kHeight)) return state.SkipWithError("no memory");
    FillRandom(image.pData, image.Samples());
    for (auto _ : state) Convert(image, 0);
    CountPixels(state);
}
BENCHMARK(BM_InPlace<BGRToYCbCr>)->Name("BGRToYCbCr")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_InPlace<YCbCrToBGR>)->Name("YCbCrToBGR")->Unit(benchmark::kMillisecond)->UseRealTime();

// The argument is the mode: 0 interpolates the chroma, 1 repeats it.
void BM_ConvertYuvToImage(benchmark::State& state)
{
    CYuvImage yuv{};
    CImage image{};
    ImageScope<CYuvImage> yuvScope(yuv);
    ImageScope<CImage> imageScope(image);
    if (!yuv.Allocate(kWidth, kHeight)) return state.SkipWithError("no memory");
    FillRandom(yuv.pBuffer, size_t{kWidth} * kHeight / 2 * 3);
    for (auto _ : state) {
        if (!ConvertYuvToImage(yuv, image, static_cast<int>(state.range(0)))) return state.SkipWithError("no memory");
    }
    CountPixels(state);
}
BENCHMARK(BM_ConvertYuvToImage)
    ->Name("ConvertYuvToImage")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void BM_ConvertImageToYuv(benchmark::State& state)
{
    CYuvImage yuv{};
    CImage image{};
    ImageScope<CYuvImage> yuvScope(yuv);
    ImageScope<CImage> imageScope(image);
    if (!image.Allocate(kWidth, kHeight)) return state.SkipWithError("no memory");
    FillRandom(image.pData, image.Samples());
    for (auto _ : state) {
        if (!ConvertImageToYuv(yuv, image)) return state.SkipWithError("no memory");
    }
    CountPixels(state);
}
BENCHMARK(BM_ConvertImageToYuv)->Name("ConvertImageToYuv")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vkr
