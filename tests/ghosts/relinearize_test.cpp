#include "ghosts/relinearize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "foundation/fixed_point.h"
#include "foundation/piecewise_linear.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {

namespace {

struct LinearBurst {
    LinearBurst(int w, int h, int n, int nRatio, int nSeed = 7) : nExposureNum(n), vRatio(n, nRatio)
    {
        std::mt19937 rng(nSeed);
        for (int k = 0; k < n; ++k) FillRandom(rng, vFrames[k], w, h, 3, 0, 255);
        FillRandom(rng, weights, w, h, n, 0, 255);
        std::fill_n(weights.pData, n, uint8_t{0});  // one pixel without weights
    }
    void Run() { ReLinearize(vFrames, weights, vRatio.data(), nExposureNum, curve, 0); }

    // Sample i of every frame from the samples of all at that place, with a lookup and a division each.
    std::vector<int> Slow(size_t i) const
    {
        constexpr int nNodes = DisplayCurve::kNodes;
        const int n = nExposureNum;
        std::vector<int64_t> vGains(n, 16);
        for (int k = n - 2; k >= 0; --k) vGains[k] = (vRatio[k] * vGains[k + 1] + 8) / 16;
        int64_t nSum = 0, nWeights = 0;
        for (int k = 0; k < n; ++k) {
            const int nWeight = weights.pData[i / 3 * n + k];
            nSum +=
                nWeight * vGains[k] * PiecewiseLinear(curve.m_LinearY, curve.m_LinearX, nNodes, vFrames[k].pData[i]);
            nWeights += nWeight;
        }
        std::vector<int> vSamples;
        for (int k = 0; k < n; ++k) {
            const int64_t v = nWeights == 0 ? 0 : std::min<int64_t>(nSum / nWeights / vGains[k], 1023);
            vSamples.push_back(nWeights == 0 ? vFrames[k].pData[i]
                                             : PiecewiseLinear(curve.m_LinearX, curve.m_LinearY, nNodes, v));
        }
        return vSamples;
    }
    std::vector<uint8_t> SlowFrame(int k) const
    {
        std::vector<uint8_t> vFrame;
        for (size_t i = 0; i < vFrames[k].Samples(); ++i) vFrame.push_back(static_cast<uint8_t>(Slow(i)[k]));
        return vFrame;
    }

    int nExposureNum;
    std::vector<int32_t> vRatio;
    DisplayCurve curve;
    TestImage vFrames[kMaxExposures], weights;
};

}  // namespace

// Small gains are worked out without divisions, large ones in 64 bits.
TEST(ReLinearize, EqualsTheSlowForm)
{
    for (const int nRatio : {16, 23, 32, 64, 256}) {
        for (int n = 1; n <= kMaxExposures; ++n) {
            ForThreads([&](int nThreads) {
                SCOPED_TRACE(testing::Message() << n << " exposures, ratio " << nRatio << ", threads " << nThreads);
                LinearBurst burst(n == 3 ? 131 : 17, 7, n, nRatio, n);
                std::vector<std::vector<uint8_t>> vWant;
                for (int k = 0; k < n; ++k) vWant.push_back(burst.SlowFrame(k));
                burst.Run();
                for (int k = 0; k < n; ++k) EXPECT_EQ(vWant[k], Samples(burst.vFrames[k])) << "frame " << k;
            });
        }
    }
}

}  // namespace vkr
