#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>

#include "flow/multi_exposure_flow.h"
#include "foundation/fixed_point.h"
#include "foundation/log.h"

// What ghost handling costs a whole burst of three, alignment left out: detection (beside the weights), embedding,
// re-linearisation and the weights anew. A disc of a sixth of the height stands still or moves by its radius from frame
// to frame; _fine detects on finer levels. The arguments are the width and height of the frames.
namespace vkr {

namespace {

constexpr int kExposures = 3;

enum class Ghosts { kOff, kOn, kFine };  // kFine: from level 2 down to 1, as for photos of 12 megapixels

class FlowBurst {
public:
    FlowBurst(const benchmark::State& state, Ghosts ghosts, bool bMoving)
    {
        SetHdrPrintSink([](const char*) {});
        m_Flow.nGlobalAlignEnable = 0;
        m_Flow.bLogoEnable = 0;
        m_Flow.m_LocalCurve.bDumpDebugFile = 0;
        m_Flow.bGhostProcessEnable = ghosts != Ghosts::kOff;
        if (ghosts == Ghosts::kFine) {
            m_Flow.m_GhostFilter.nGhostPyramidStartLevel = 2;
            m_Flow.m_GhostFilter.nMinGhostLevel = 1;
        }
        for (int k = 0; k < kExposures; ++k) {
            CYuvImage& frame = m_Flow.m_YuvFrames[k];
            if (!frame.Allocate(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))) continue;
            std::fill_n(frame.pBuffer, frame.nCapacity, uint8_t{128});
            Draw(frame, k, bMoving ? k : 1);
        }
    }
    ~FlowBurst()
    {
        m_Result.Release();
        SetHdrPrintSink(nullptr);
    }
    FlowBurst(const FlowBurst&) = delete;
    FlowBurst& operator=(const FlowBurst&) = delete;

    bool Fuse() { return m_Flow.ProcessImage(kExposures, 1, {}, 0, 0, m_Result); }

private:
    // Slopes with grain; each exposure has twice the grey values of the one before.
    static void Draw(CYuvImage& frame, int k, int nPlace)
    {
        std::minstd_rand rng(k + 1);
        const int nRadius = frame.nHeight / 6, xDisc = frame.nWidth / 4 + nPlace * nRadius;
        for (int y = 0; y < frame.nHeight; ++y) {
            for (int x = 0; x < frame.nWidth; ++x) {
                const int dx = x - xDisc, dy = y - frame.nHeight / 2;
                const bool bDisc = dx * dx + dy * dy < nRadius * nRadius;
                const int nLight = bDisc ? 20 + (x & 8) : 40 + 60 * x / frame.nWidth + (y & 16);
                frame.RowY(y)[x] = ClampU8((nLight << k) / 2 + static_cast<int>(rng() % 8));
            }
        }
    }

    CMultiExposureHDRProcessFlowOpt m_Flow;
    CYuvImage m_Result{};
};

void BM_Burst(benchmark::State& state, Ghosts ghosts, bool bMoving)
{
    FlowBurst burst(state, ghosts, bMoving);
    for (auto _ : state) {
        if (!burst.Fuse()) return state.SkipWithError("no memory");
    }
}

#define GHOST_BENCHMARK(form, ghosts, bMoving)                 \
    BENCHMARK_CAPTURE(BM_Burst, form, Ghosts::ghosts, bMoving) \
        ->Args({4000, 3000})                                   \
        ->Unit(benchmark::kMillisecond)                        \
        ->UseRealTime()                                        \
        ->MeasureProcessCPUTime()

GHOST_BENCHMARK(without, kOff, true);
GHOST_BENCHMARK(still, kOn, false);
GHOST_BENCHMARK(moving, kOn, true);
GHOST_BENCHMARK(moving_fine, kFine, true);

}  // namespace

}  // namespace vkr
