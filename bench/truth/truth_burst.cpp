#include "truth/truth_burst.h"

#include <algorithm>
#include <cmath>

#include "truth/expose_frame.h"
#include "truth/hand_motion.h"
#include "truth/sensor_rows.h"
#include "truth/stops.h"

namespace vkr::truth {

namespace {

constexpr int kSplineMargin = 4;
constexpr float kMetered = 0.13f;  // charge that the median of the light gives in the middle exposure, white is 1

}  // namespace

TruthBurst::~TruthBurst()
{
    for (CYuvImage& frame : m_vFrames) frame.Release();
}

bool TruthBurst::Draw(const BurstParams& params)
{
    const int w = params.nWidth, h = params.nHeight;
    for (CYuvImage& frame : m_vFrames) {
        if (!frame.Allocate(w, h)) return false;
    }
    TruthRandom random(uint64_t{params.nSeed} + 1);
    const int nMargin = static_cast<int>(kReach * w) + kSplineMargin;
    m_map.Draw(w + 2 * nMargin, h + 2 * nMargin, w, random.Bits());
    const float fGain = kMetered / m_map.MedianLight();
    // No frame lies on the grid of the scene, the reference neither.
    const Homography place = Translation(nMargin + random.Uniform(0, 1), nMargin + random.Uniform(0, 1));
    for (int k = 0; k < kExposures; ++k) {
        m_vToReference[k] = k == kReference ? Homography{} : HandMotion(w, h, random);
        DrawFrame(params, place * m_vToReference[k], fGain, k);
    }
    return true;
}

void TruthBurst::DrawFrame(const BurstParams& params, const Homography& toMap, float fGain, int k)
{
    const int w = params.nWidth;
    const Sensor sensor(fGain * TwoToThe(params.fStops * static_cast<float>(k - kReference)), params.fNoise,
                        params.nSeed * kExposures + static_cast<uint32_t>(k));
    const auto lightRow = [&](int, int y, float* pLight) { m_map.SampleRow(toMap, y, w, pLight); };
    ExposeFrame(sensor, lightRow, m_vFrames[k]);
}

double TruthBurst::FrameError(const Homography* vToReference, int k) const
{
    return CornerError(vToReference[k], m_vToReference[k], m_vFrames[k].nWidth, m_vFrames[k].nHeight);
}

double TruthBurst::WorstCornerError(const Homography* vToReference) const
{
    double fWorst = 0;
    for (int k = 0; k < kExposures; ++k) fWorst = std::max(fWorst, FrameError(vToReference, k));
    return fWorst;
}

bool TruthBurst::IsWorseThanNothing(const Homography* vToReference) const
{
    const Homography vNothing[kExposures];
    for (int k = 0; k < kExposures; ++k) {
        if (FrameError(vToReference, k) > FrameError(vNothing, k)) return true;
    }
    return false;
}

}  // namespace vkr::truth
