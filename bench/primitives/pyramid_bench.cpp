#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "primitives/gaussian_pyramid.h"
#include "primitives/smooth.h"

namespace vkr {

namespace {

using Pyramid = CGaussianPyramid2;

template <class T>
std::vector<T> Noise(size_t nCount, int lo, int hi)
{
    std::mt19937 rng(1);
    std::uniform_int_distribution<int> pick(lo, hi);
    std::vector<T> vOut(nCount);
    for (T& sample : vOut) sample = static_cast<T>(pick(rng));
    return vOut;
}

// Arguments: width and height of the larger picture, channels. The larger one is what is counted, in pixels and bytes.
struct Case {
    explicit Case(const benchmark::State& state)
        : w(static_cast<int>(state.range(0))),
          h(static_cast<int>(state.range(1))),
          nDim(static_cast<int>(state.range(2)))
    {
    }
    size_t Samples() const { return static_cast<size_t>(w) * h * nDim; }
    void Report(benchmark::State& state, double fBytesPerSample) const
    {
        const double fRounds = static_cast<double>(state.iterations());
        state.counters["pixels/s"] = benchmark::Counter(fRounds * w * h, benchmark::Counter::kIsRate);
        state.counters["bytes/s"] =
            benchmark::Counter(fRounds * fBytesPerSample * static_cast<double>(Samples()), benchmark::Counter::kIsRate);
    }
    int w, h, nDim;
};

// op(pSrc, pDst, w, h, nDim) halves.
template <class T, class Op>
void Halve(benchmark::State& state, const Op& op)
{
    const Case pictures(state);
    const auto vSrc = Noise<T>(pictures.Samples(), 0, 255);
    std::vector<T> vDst(pictures.Samples() / 4);
    for (auto _ : state) {
        op(vSrc.data(), vDst.data(), pictures.w, pictures.h, pictures.nDim);
        benchmark::ClobberMemory();
    }
    pictures.Report(state, 1.25 * sizeof(T));
}

// op(pSrc, pDst, w, h, nDim) doubles.
template <class T, class Op>
void Double(benchmark::State& state, const Op& op)
{
    const Case pictures(state);
    const auto vSrc = Noise<T>(pictures.Samples() / 4, 0, 255);
    std::vector<T> vDst(pictures.Samples());
    for (auto _ : state) {
        op(vSrc.data(), vDst.data(), pictures.w / 2, pictures.h / 2, pictures.nDim);
        benchmark::ClobberMemory();
    }
    pictures.Report(state, 1.25 * sizeof(T));
}

void BM_DownScaleImageFast(benchmark::State& state)
{
    Halve<uint8_t>(state, Pyramid::DownScaleImageFast);
}
void BM_DownScaleShortParallel(benchmark::State& state)
{
    Halve<int16_t>(state, Pyramid::DownScaleShortParallel);
}
void BM_UpScaleImageFast(benchmark::State& state)
{
    Double<uint8_t>(state, Pyramid::UpScaleImageFast);
}
void BM_UpScaleShortParallel(benchmark::State& state)
{
    Double<int16_t>(state, Pyramid::UpScaleShortParallel);
}

// The forms on one thread, with the carry.
template <class T, class Op>
auto WithCarry(const Op& op)
{
    return [op](const T* pSrc, T* pDst, int w, int h, int nDim) { return op(pSrc, pDst, w, h, nDim, true); };
}
void BM_DownScaleImage(benchmark::State& state)
{
    Halve<uint8_t>(state, WithCarry<uint8_t>(Pyramid::DownScaleImage));
}
void BM_UpScaleImage(benchmark::State& state)
{
    Double<uint8_t>(state, WithCarry<uint8_t>(Pyramid::UpScaleImage));
}
void BM_UpScaleShort(benchmark::State& state)
{
    Double<int16_t>(state, WithCarry<int16_t>(Pyramid::UpScaleShort));
}
void BM_UpScaleShortFast(benchmark::State& state)
{
    Double<int16_t>(state, WithCarry<int16_t>(Pyramid::UpScaleShortFast));
}

void BM_SubtractImage(benchmark::State& state)
{
    const Case pictures(state);
    const auto vA = Noise<uint8_t>(pictures.Samples(), 0, 255), vB = Noise<uint8_t>(pictures.Samples(), 0, 255);
    std::vector<int16_t> vDst(pictures.Samples());
    for (auto _ : state) {
        Pyramid::SubtractImage(vA.data(), vB.data(), vDst.data(), pictures.w, pictures.h, pictures.w, pictures.nDim);
        benchmark::ClobberMemory();
    }
    pictures.Report(state, 4);
}

void BM_AddShort(benchmark::State& state)
{
    const Case pictures(state);
    const auto vA = Noise<int16_t>(pictures.Samples(), -255, 255), vB = Noise<int16_t>(pictures.Samples(), -255, 255);
    std::vector<int16_t> vDst(pictures.Samples());
    for (auto _ : state) {
        Pyramid::AddShort(vA.data(), vB.data(), vDst.data(), pictures.w, pictures.h, pictures.w, pictures.nDim);
        benchmark::ClobberMemory();
    }
    pictures.Report(state, 6);
}

template <class Image, class Smooth>
void SmoothPicture(benchmark::State& state, const Smooth& smooth, bool bDither)
{
    const Case pictures(state);
    Image src{}, dst{};
    if (!src.AllocateDim(pictures.w, pictures.h, pictures.nDim)) return state.SkipWithError("no memory");
    const auto vNoise = Noise<uint8_t>(pictures.Samples(), 0, 255);
    for (size_t i = 0; i < vNoise.size(); ++i) src.pData[i] = vNoise[i];
    for (auto _ : state) {
        smooth(src, dst, bDither);
        benchmark::ClobberMemory();
    }
    pictures.Report(state, 2.0 * sizeof(*src.pData));
    src.Release();
    dst.Release();
}

void BM_SmoothImage8(benchmark::State& state)
{
    SmoothPicture<CImage>(state, CSmoothFilter5x5::SmoothImage8, state.range(3) != 0);
}
void BM_SmoothImage16(benchmark::State& state)
{
    SmoothPicture<CShortImage>(state, CSmoothFilter5x5::SmoothImage16, state.range(3) != 0);
}

// Full luma; working pictures: weights, one exposure, three exposures interleaved; a level low in the pyramid.
void LumaAndWorking(benchmark::internal::Benchmark* pBench)
{
    pBench->Args({4000, 3000, 1})->Args({2000, 1500, 3})->Args({2000, 1500, 9})->Args({126, 94, 3});
    pBench->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(BM_DownScaleImageFast)->Apply(LumaAndWorking);
BENCHMARK(BM_UpScaleImageFast)->Apply(LumaAndWorking);
BENCHMARK(BM_DownScaleShortParallel)->Apply(LumaAndWorking);
BENCHMARK(BM_UpScaleShortParallel)->Apply(LumaAndWorking);
BENCHMARK(BM_DownScaleImage)->Apply(LumaAndWorking);
BENCHMARK(BM_UpScaleImage)->Apply(LumaAndWorking);
BENCHMARK(BM_UpScaleShort)->Apply(LumaAndWorking);
BENCHMARK(BM_UpScaleShortFast)->Apply(LumaAndWorking);
BENCHMARK(BM_SubtractImage)->Apply(LumaAndWorking);
BENCHMARK(BM_AddShort)->Apply(LumaAndWorking);
BENCHMARK(BM_SmoothImage8)
    ->Args({2000, 1500, 3, 1})
    ->Args({2000, 1500, 3, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(BM_SmoothImage16)->Args({1000, 750, 4, 1})->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

}  // namespace vkr
