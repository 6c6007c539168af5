#include "burst/exposure_ratio.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "flow/multi_exposure_flow.h"
#include "foundation/piecewise_linear.h"
#include "pictures/picture_shift.h"

namespace vkr::tool {

namespace {

constexpr int kWidth = 240, kHeight = 160;

// Patches of light from a hundredth of white to four times that, exposed through the display curve.
class ExposureRatio : public testing::Test {
protected:
    Raster Exposed(double fGain, Shift shift = {}, int nNoise = 0)
    {
        Raster rgb;
        rgb.Resize(kWidth, kHeight, 3);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < 3 * kWidth; ++x) {
                const int nPlace = (x / 3 - shift.nX + 64) / 9 * 37 + (y - shift.nY + 64) / 7 * 101 + x % 3 * 5;
                const double fLight = 10 * std::pow(1.09, nPlace * 7919 % 70);
                rgb.Row(y)[x] = Grey(fGain * fLight, nNoise);
            }
        }
        return rgb;
    }

    int Measure(const Raster& darker, const Raster& brighter)
    {
        return MeasureExposureRatio(darker, brighter, m_curve);
    }

private:
    uint8_t Grey(double fLight, int nNoise)
    {
        const int nLight = static_cast<int>(std::min(fLight, 1023.0));
        const int nGrey = PiecewiseLinear(m_curve.m_LinearX10, m_curve.m_LinearY, DisplayCurve::kNodes, nLight);
        return static_cast<uint8_t>(
            std::clamp(nGrey + std::uniform_int_distribution<int>(-nNoise, nNoise)(m_rng), 0, 255));
    }

    CMultiExposureHDRProcessFlowOpt m_flow;
    const DisplayCurve& m_curve = m_flow;
    std::mt19937 m_rng{3};
};

}  // namespace

TEST_F(ExposureRatio, IsWhatTheCurveWasGiven)
{
    const Raster darker = Exposed(0.5);
    for (const int nRatio : {16, 24, 32, 64, 100}) {
        EXPECT_NEAR(nRatio, Measure(darker, Exposed(0.5 * nRatio / 16)), 1 + nRatio / 32) << nRatio;
    }
    EXPECT_NEAR(64, Measure(Exposed(0.25, {}, 3), Exposed(1, {12, -7}, 3)), 4);
}

TEST_F(ExposureRatio, IsUnknownWithoutWellExposedSamples)
{
    EXPECT_EQ(0, Measure(Exposed(0.001), Exposed(0.004)));
    EXPECT_EQ(0, Measure(Exposed(1), Exposed(1000)));
}

}  // namespace vkr::tool
