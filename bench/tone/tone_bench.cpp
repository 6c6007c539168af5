#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "local_curve/local_auto_curve_filter.h"
#include "primitives/pyramid_levels.h"
#include "tone/brightness_statistics.h"
#include "tone/clip_saturation.h"
#include "tone/edge_restore.h"
#include "tone/face_tone_stretch.h"
#include "tone/global_stretch.h"
#include "tone/hsv_stretch_tone.h"
#include "tone/hsv_tone.h"

namespace vkr {
namespace {

constexpr int kWidth = 2000;  // the tone picture of a 12 megapixel frame
constexpr int kHeight = 1500;

void Silence()
{
    SetHdrPrintSink([](const char*) {});
}

void CountPixels(benchmark::State& state, int64_t nPixels)
{
    state.counters["pixels/s"] =
        benchmark::Counter(static_cast<double>(nPixels), benchmark::Counter::kIsIterationInvariantRate);
}

// A slope of grey with some grain, and detail of a few levels.
bool MakeFused(CShortImage& fused)
{
    if (!fused.AllocateDim(kWidth, kHeight, 6)) return false;
    uint32_t nRandom = 1;
    for (size_t i = 0; i < fused.Samples(); ++i) {
        nRandom = nRandom * 1664525U + 1013904223U;
        const int nGrain = static_cast<int>(nRandom >> 28);
        const int nSlope = static_cast<int>(i / 6 % kWidth * 250 / kWidth);
        fused.pData[i] = static_cast<int16_t>(i % 6 < 3 ? nSlope + nGrain : nGrain - 8);
    }
    return true;
}

// The brightest eighth of every row.
bool MakeMask(CImage& mask)
{
    if (!mask.AllocateGray(kWidth, kHeight)) return false;
    for (size_t i = 0; i < mask.Samples(); ++i) mask.pData[i] = i % kWidth > kWidth / 8 * 7 ? 12 : 0;
    return true;
}

void BM_GlobalStretch(benchmark::State& state)
{
    Silence();
    CShortImage fused{};
    CImage mask{}, out{};
    ImageScope fusedScope(fused);
    ImageScope maskScope(mask), outScope(out);
    if (!MakeFused(fused) || !MakeMask(mask)) return state.SkipWithError("no memory");
    for (auto _ : state) {
        StretchLevels levels;
        GlobalStretch(fused, mask, 1, ToneParams{}, 0, levels, out);
    }
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_GlobalStretch)->Name("GlobalStretch")->Unit(benchmark::kMillisecond)->UseRealTime();

// A burst with a face: the pictures that its tone reads, and the parameters. The face takes a fifth of the width.
struct FaceBurst {
    CShortImage fused{};
    CImage reference{}, mask{}, out{};
    FaceBox box = {800, 400, 1200, 1000};
    FaceParams faceParams;
    FaceToneParams hsvParams;
    MeasuredFace face;
    StretchLevels levels;

    bool Make()
    {
        faceParams.nBrightDarkFaceThres = 1000;
        hsvParams.bHSVTone = 1;
        if (!MakeFused(fused) || !MakeMask(mask) || !reference.Allocate(kWidth, kHeight)) return false;
        for (size_t i = 0; i < reference.Samples(); ++i) {  // skin, more or less: red above green above blue
            fused.pData[2 * i - i % 3] = static_cast<int16_t>(fused.pData[2 * i - i % 3] + 40 * (i % 3));
            reference.pData[i] = static_cast<uint8_t>(std::clamp<int>(fused.pData[2 * i - i % 3] - 20, 0, 255));
        }
        return true;
    }
    FusedFace View() { return {box, fused, reference, mask}; }
    ~FaceBurst()
    {
        fused.Release();
        reference.Release();
        mask.Release();
        out.Release();
    }
};

// All that a face costs more than it spares: both measurements and its stretch, beside GlobalStretch.
void BM_FaceTone(benchmark::State& state)
{
    Silence();
    FaceBurst burst;
    if (!burst.Make()) return state.SkipWithError("no memory");
    for (auto _ : state) {
        int32_t bBrightDarkFace = 0;
        StretchLevels levels;
        GetReferenceFaceIntensity(burst.box, burst.reference, burst.faceParams, {}, burst.face.reference,
                                  bBrightDarkFace);
        GetFusionFaceIntensity(burst.box, burst.fused, 0, burst.faceParams, {}, bBrightDarkFace, burst.face.fusion);
        FaceToneStretch(burst.View(), {ToneParams{}, burst.faceParams, burst.hsvParams, 1, 1}, burst.face, levels,
                        burst.out);
    }
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_FaceTone)->Name("FaceTone")->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_HSVTone(benchmark::State& state)
{
    Silence();
    FaceBurst burst;
    if (!burst.Make() || !burst.out.CopyFrom(burst.reference)) return state.SkipWithError("no memory");
    for (auto _ : state) HSVTone(burst.box, burst.reference, burst.hsvParams, 0, burst.out);
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_HSVTone)->Name("HSVTone")->Unit(benchmark::kMillisecond)->UseRealTime();

// Argument: bHSP2PTone.
void BM_HSVStretchTone(benchmark::State& state)
{
    Silence();
    FaceBurst burst;
    if (!burst.Make()) return state.SkipWithError("no memory");
    burst.hsvParams.bHSP2PTone = static_cast<int32_t>(state.range(0));
    for (auto _ : state) {
        StretchLevels levels;
        HSVStretchTone(burst.View(), {ToneParams{}, burst.faceParams, burst.hsvParams, 1, 1}, burst.face, levels,
                       burst.out);
    }
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_HSVStretchTone)->Name("HSVStretchTone")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ClipSaturation(benchmark::State& state)
{
    Silence();
    CShortImage fused{};
    CImage mask{};
    ImageScope fusedScope(fused);
    ImageScope maskScope(mask);
    if (!MakeFused(fused) || !MakeMask(mask)) return state.SkipWithError("no memory");
    for (auto _ : state) ClipSaturation(fused, mask, 16);
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_ClipSaturation)->Name("ClipSaturation")->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_MeanBrightness(benchmark::State& state)
{
    CShortImage fused{};
    ImageScope fusedScope(fused);
    if (!MakeFused(fused)) return state.SkipWithError("no memory");
    for (auto _ : state) benchmark::DoNotOptimize(GetMeanBrightness(fused, static_cast<int32_t>(state.range(0))));
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_MeanBrightness)->Name("GetMeanBrightness")->Arg(0)->Arg(3)->Unit(benchmark::kMillisecond)->UseRealTime();

// Arguments: nWYUV, nSaturateBoost.
void BM_LocalCurve(benchmark::State& state)
{
    Silence();
    CShortImage fused{};
    CImage source{}, image{};
    ImageScope fusedScope(fused);
    ImageScope sourceScope(source), imageScope(image);
    StretchLevels levels;
    if (!MakeFused(fused)) return state.SkipWithError("no memory");
    if (!GlobalStretch(fused, CImage{}, 0, ToneParams{}, 0, levels, source)) return state.SkipWithError("no memory");
    CLocalAutoCurveFilter filter;
    filter.Initialize();
    filter.bDumpDebugFile = 0;
    filter.nWYUV = static_cast<int32_t>(state.range(0));
    filter.nSaturateBoost = static_cast<int32_t>(state.range(1));
    for (auto _ : state) {
        image.CopyFrom(source);
        filter.ProcessImage(image);
    }
    CountPixels(state, int64_t{kWidth} * kHeight);
}
BENCHMARK(BM_LocalCurve)
    ->Name("LocalCurve")
    ->Args({16, 0})
    ->Args({16, 64})
    ->Args({8, 0})
    ->Args({0, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void BM_SplitAndUpscale(benchmark::State& state)
{
    CImage ycbcr{};
    CYuvImage frame{};
    ImageScope imageScope(ycbcr);
    ImageScope frameScope(frame);
    if (!ycbcr.Allocate(kWidth, kHeight)) return state.SkipWithError("no memory");
    for (size_t i = 0; i < ycbcr.Samples(); ++i) ycbcr.pData[i] = static_cast<uint8_t>(i * 7);
    for (auto _ : state) SplitAndUpscale(ycbcr, PyramidParams{}, frame);
    CountPixels(state, int64_t{4} * kWidth * kHeight);
}
BENCHMARK(BM_SplitAndUpscale)->Name("SplitAndUpscale")->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_AddEdge(benchmark::State& state)
{
    CYuvImage frame{};
    CShortImage edge{};
    ImageScope frameScope(frame);
    ImageScope edgeScope(edge);
    if (!frame.Allocate(2 * kWidth, 2 * kHeight) || !edge.AllocateDim(2 * kWidth, 2 * kHeight, 1)) {
        return state.SkipWithError("no memory");
    }
    for (size_t i = 0; i < edge.Samples(); ++i) edge.pData[i] = static_cast<int16_t>(i % 31) - 15;
    std::fill_n(frame.pY, edge.Samples(), uint8_t{100});
    for (auto _ : state) AddEdge(frame, edge, frame);
    CountPixels(state, int64_t{4} * kWidth * kHeight);
}
BENCHMARK(BM_AddEdge)->Name("AddEdge")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vkr
