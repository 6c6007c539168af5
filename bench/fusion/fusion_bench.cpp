#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>

#include "foundation/image.h"
#include "foundation/log.h"
#include "fusion/edge_layers.h"
#include "fusion/pyramid_fusion.h"
#include "fusion/working_frames.h"
#include "weights/build_weight.h"
#include "weights/normalize_weight.h"
#include "weights/satu_mask.h"

// The stages of the fusion at the size of a burst of three: the arguments are the width and height of the frames. The
// working pictures have half of each. Pixels are those of the frames, times three exposures.
namespace vkr {

namespace {

constexpr int kExposures = 3;

template <class T>
void FillNoise(T* pData, size_t nCount, int nSeed)
{
    std::minstd_rand rng(nSeed);
    for (size_t i = 0; i < nCount; ++i) pData[i] = static_cast<T>((i >> 4) + rng() % 32);  // slopes with grain
}

// Everything that a burst holds between the stages, with the parameters that a new engine has.
class Burst {
public:
    explicit Burst(const benchmark::State& state)
        : m_nWidth(static_cast<int>(state.range(0))), m_nHeight(static_cast<int>(state.range(1)))
    {
        SetHdrPrintSink([](const char*) {});
        for (int k = 0; k < kExposures; ++k) {
            if (!m_vFrames[k].Allocate(m_nWidth, m_nHeight)) continue;
            FillNoise(m_vFrames[k].pBuffer, static_cast<size_t>(m_nWidth) * m_nHeight / 2 * 3, k + 1);
        }
    }
    ~Burst()
    {
        for (CYuvImage& frame : m_vFrames) frame.Release();
        for (CImage& work : m_vWork) work.Release();
        for (CImage& level : m_vWeights) level.Release();
        for (CShortImage& layer : m_vLayers) layer.Release();
        m_Mask.Release();
        m_Fused.Release();
        m_Edge.Release();
        SetHdrPrintSink(nullptr);
    }
    Burst(const Burst&) = delete;
    Burst& operator=(const Burst&) = delete;

    bool Binarize() { return BinarizeFrames(m_vFrames, kExposures, 0, m_Flags, m_vWork, m_vLayers); }
    bool Mark() { return GenerateSatuMask(m_vWork[0], 8, m_Mask); }
    bool Weigh()
    {
        for (int k = 0; k < kExposures; ++k) m_Flags.SetReady(k);
        return BuildWeight({m_vWork, kExposures, 1}, m_Weight, FaceAim{}, m_Pyramid, m_Flags, m_vWeights) > 0;
    }
    bool Fuse() { return PyramidFusion({m_vWork, kExposures, m_vWeights, m_vCoefs}, m_Fusion, m_Pyramid, {}, m_Fused); }
    bool FuseEdges() { return FuseEdgeLayers(m_vWeights[0], m_vLayers, kExposures, m_Pyramid, m_Edge); }

    void Report(benchmark::State& state) const
    {
        state.counters["pixels/s"] = benchmark::Counter(
            static_cast<double>(state.iterations()) * m_nWidth * m_nHeight * kExposures, benchmark::Counter::kIsRate);
    }

private:
    int m_nWidth, m_nHeight;
    WeightParams m_Weight;
    FusionParams m_Fusion;
    PyramidParams m_Pyramid;
    ReadyFlags m_Flags;
    CYuvImage m_vFrames[kMaxExposures] = {};
    CImage m_vWork[kMaxExposures] = {}, m_vWeights[kMaxLevels] = {}, m_Mask = {};
    CShortImage m_vLayers[kMaxExposures] = {}, m_vCoefs[kMaxLevels] = {}, m_Fused = {}, m_Edge = {};
};

// Runs the stages before it once, then the stage in question over and over.
using Stage = bool (Burst::*)();
void RunStage(benchmark::State& state, Stage pStage)
{
    Burst burst(state);
    if (!burst.Binarize() || !burst.Weigh()) state.SkipWithError("no memory");
    for (auto _ : state) {
        if (!(burst.*pStage)()) state.SkipWithError("no memory");
    }
    burst.Report(state);
}

BENCHMARK_CAPTURE(RunStage, binarize, &Burst::Binarize)
    ->Name("BinarizeFrames")
    ->Args({4000, 3000})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunStage, mask, &Burst::Mark)
    ->Name("GenerateSatuMask")
    ->Args({4000, 3000})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunStage, weigh, &Burst::Weigh)
    ->Name("BuildWeight")
    ->Args({4000, 3000})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunStage, fuse, &Burst::Fuse)
    ->Name("PyramidFusion")
    ->Args({4000, 3000})
    ->Args({1000, 750})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunStage, edges, &Burst::FuseEdges)
    ->Name("FuseEdgeLayers")
    ->Args({4000, 3000})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace vkr
