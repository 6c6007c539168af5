#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>

#include "algebra/matrix.h"
#include "align/valid_mask.h"
#include "foundation/image.h"
#include "warp/homograph_mapping_filter.h"

// What moves a frame: the whole frame, its mask. The arguments of the frame are width, height and
// rotation in tenths of a degree; pixels are those of the frame.
namespace vkr {

namespace {

// About the picture's centre, with a small shift.
CMatrix Turned(int nWidth, int nHeight, double fDegrees)
{
    const double fAngle = fDegrees * 3.14159265358979 / 180, fCos = std::cos(fAngle), fSin = std::sin(fAngle);
    const double xMid = nWidth * 0.5, yMid = nHeight * 0.5;
    CMatrix matrix = IdentityHomography();
    matrix.At(0, 0) = matrix.At(1, 1) = fCos;
    matrix.At(0, 1) = -fSin;
    matrix.At(1, 0) = fSin;
    matrix.At(0, 2) = xMid - fCos * xMid + fSin * yMid + 7.3;
    matrix.At(1, 2) = yMid - fSin * xMid - fCos * yMid - 4.8;
    return matrix;
}

void CountPixels(benchmark::State& state, double fPixels)
{
    state.counters["pixels/s"] =
        benchmark::Counter(fPixels * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_ProcessImage(benchmark::State& state)
{
    const int nWidth = static_cast<int>(state.range(0)), nHeight = static_cast<int>(state.range(1));
    const CMatrix homography = Turned(nWidth, nHeight, static_cast<double>(state.range(2)) / 10);
    CHomographMappingFilter filter;
    CYuvImage frame{}, warped{};
    if (!frame.Allocate(nWidth, nHeight)) return state.SkipWithError("no memory");
    std::minstd_rand rng(1);
    for (int i = 0; i < nWidth * nHeight / 2 * 3; ++i) frame.pBuffer[i] = static_cast<uint8_t>(rng() >> 8);
    for (auto _ : state) {
        if (!filter.ProcessImage(frame, warped, homography)) state.SkipWithError("no memory");
    }
    CountPixels(state, static_cast<double>(nWidth) * nHeight);
    frame.Release();
    warped.Release();
}

void BM_CutValidRegion(benchmark::State& state)
{
    const int nWidth = static_cast<int>(state.range(0)), nHeight = static_cast<int>(state.range(1));
    const CMatrix homography = Turned(nWidth, nHeight, 1);
    CImage mask{}, reference{};
    if (!reference.AllocateGray(2 * nWidth, 2 * nHeight)) return state.SkipWithError("no memory");
    for (auto _ : state) {
        if (!CutValidRegion(nWidth, nHeight, homography, mask, reference)) state.SkipWithError("no memory");
    }
    CountPixels(state, static_cast<double>(nWidth) * nHeight);
    mask.Release();
    reference.Release();
}

}  // namespace

BENCHMARK(BM_ProcessImage)
    ->Name("HomographMapping")
    ->Args({4000, 3000, 0})
    ->Args({4000, 3000, 10})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

BENCHMARK(BM_CutValidRegion)->Name("CutValidRegion")->Args({2000, 1500})->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace vkr
