#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>

#include "foundation/fixed_point.h"
#include "foundation/image.h"
#include "foundation/log.h"
#include "ghosts/ghost_process_filter.h"

// Ghost detection at the size of a burst of three with a moving disc: the arguments are the width and height of the
// frames (the working pictures have half of each) and the finest level of detection. Pixels are those of the frames,
// times three exposures.
namespace vkr {

namespace {

constexpr int kExposures = 3;

class Burst {
public:
    explicit Burst(const benchmark::State& state)
        : m_nWidth(static_cast<int>(state.range(0)) / 2), m_nHeight(static_cast<int>(state.range(1)) / 2)
    {
        SetHdrPrintSink([](const char*) {});
        m_Filter.nMinGhostLevel = static_cast<int>(state.range(2));
        for (int k = 0; k < kExposures; ++k) {
            if (!m_vWork[k].Allocate(m_nWidth, m_nHeight) || !m_vMasks[k].AllocateGray(m_nWidth, m_nHeight)) continue;
            Draw(k);
            std::fill_n(m_vMasks[k].pData, m_vMasks[k].Samples(), uint8_t{255});
        }
    }
    ~Burst()
    {
        for (CImage& work : m_vWork) work.Release();
        for (CImage& mask : m_vMasks) mask.Release();
        m_Map.Release();
        SetHdrPrintSink(nullptr);
    }
    Burst(const Burst&) = delete;
    Burst& operator=(const Burst&) = delete;

    bool Detect() { return m_Filter.DetectGhost({m_vWork, kExposures, 1}, m_vMasks, {}, {}, m_Map); }

    void Report(benchmark::State& state) const
    {
        state.counters["pixels/s"] =
            benchmark::Counter(4.0 * static_cast<double>(state.iterations()) * m_nWidth * m_nHeight * kExposures,
                               benchmark::Counter::kIsRate);
    }

private:
    // Slopes with grain, and a disc of a sixth of the height that goes to the right.
    void Draw(int k)
    {
        std::minstd_rand rng(k + 1);
        const int nRadius = m_nHeight / 6, xDisc = m_nWidth / 4 + k * nRadius;
        for (int y = 0; y < m_nHeight; ++y) {
            for (int x = 0; x < m_nWidth; ++x) {
                const int dx = x - xDisc, dy = y - m_nHeight / 2;
                const bool bDisc = dx * dx + dy * dy < nRadius * nRadius;
                const int nLight = bDisc ? 20 + (x & 8) : 40 + 60 * x / m_nWidth + (y & 16);
                for (int c = 0; c < 3; ++c) {
                    m_vWork[k].Row(y)[3 * x + c] = ClampU8((nLight << k) / 2 + static_cast<int>(rng() % 8));
                }
            }
        }
    }

    int m_nWidth, m_nHeight;
    CGhostProcessFilter m_Filter;
    CImage m_vWork[kExposures] = {}, m_vMasks[kExposures] = {};
    CImage m_Map = {};
};

void BM_DetectGhost(benchmark::State& state)
{
    Burst burst(state);
    for (auto _ : state) {
        if (!burst.Detect()) return state.SkipWithError("no memory");
    }
    burst.Report(state);
}

}  // namespace

BENCHMARK(BM_DetectGhost)
    ->Name("DetectGhost")
    ->Args({4000, 3000, 2})
    ->Args({4000, 3000, 0})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

}  // namespace vkr
