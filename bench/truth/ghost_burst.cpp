#include "truth/ghost_burst.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/fixed_point.h"
#include "foundation/parallel_rows.h"
#include "scene/scene_math.h"
#include "truth/expose_frame.h"
#include "truth/sensor_rows.h"
#include "truth/stops.h"

namespace vkr::truth {

namespace {

float GainOf(const Exposing& exposing, int k)
{
    return TwoToThe(exposing.fStops * static_cast<float>(k - GhostBurst::kReference));
}

// The sum of the four bytes of a hash has a deviation of 147.8.
void AddGreyNoise(float fDeviation, uint32_t nSeed, CYuvImage& frame)
{
    const int nBytes = frame.nWidth * frame.nHeight / 2 * 3;
    ParallelRows(nBytes, [&](RowBlock bytes) {
        for (int i = bytes.nBegin; i < bytes.nEnd; ++i) {
            const uint32_t nBits = scene::HashBits(static_cast<uint32_t>(i), 1, nSeed);
            const uint32_t nPairs = (nBits & 0x00ff00ffU) + (nBits >> 8 & 0x00ff00ffU);
            const int nBell = static_cast<int>((nPairs & 0xffffU) + (nPairs >> 16)) - 510;
            const float f = static_cast<float>(frame.pBuffer[i]) + fDeviation * static_cast<float>(nBell) / 147.8f;
            frame.pBuffer[i] = ClampU8(static_cast<int>(f + 0.5f));
        }
    });
}

// Grey values of one working row, the largest of R, G, B.
class WorkRows {
public:
    WorkRows(const GhostScene& scene, float fGain) : m_scene(scene), m_sensor(fGain, 0, 0) {}

    void Expose(int y, unsigned nPlaces, std::vector<int>& vLargest)
    {
        const int w = m_scene.Width();
        const size_t nRow = static_cast<size_t>(w) * LightMap::kChannels;
        m_vLight.resize(nRow);
        m_vIndex.resize(nRow);
        for (int i = 0; i < 2; ++i) {
            m_vGrey[i].resize(nRow);
            m_scene.LightRow(2 * y + i, nPlaces, m_scratch, m_vLight.data());
            m_sensor.ExposeRow(m_vLight.data(), 0, w, m_vIndex.data(), m_vGrey[i].data());
        }
        vLargest.assign(static_cast<size_t>(w / 2), 0);
        for (size_t x = 0; x < vLargest.size(); ++x) {
            for (size_t i = 2 * x * LightMap::kChannels, c = 0; c < 3; ++c, ++i) {
                const size_t j = i + LightMap::kChannels;
                const float f = 0.25f * (m_vGrey[0][i] + m_vGrey[0][j] + m_vGrey[1][i] + m_vGrey[1][j]);
                vLargest[x] = std::max(vLargest[x], static_cast<int>(f + 0.5f));
            }
        }
    }

private:
    const GhostScene& m_scene;
    Sensor m_sensor;
    GhostScene::Scratch m_scratch;
    std::vector<float> m_vLight, m_vGrey[2];
    std::vector<int32_t> m_vIndex;
};

// The defaults of nDiffBrThre and of the middle point of nGhostThre.
constexpr int kDeadZone = 8, kMiddlePoint = 64;

bool Shows(int nDark, int nBright)
{
    const int nDiff = std::abs(nDark - nBright);
    const int nFromMid = std::min(std::abs(nDark - 128), std::abs(nBright - 128));
    return nDiff > kDeadZone && 4 * (((128 - nFromMid) * (nDiff - kDeadZone)) >> 7) > kMiddlePoint;
}

bool IsRowOf(const GhostScene& scene, int k, int y)
{
    return std::abs(2 * y + 0.5 - scene.Place(k).y) <= scene.Radius();
}

bool IsAt(const GhostScene& scene, int k, int x, int y)
{
    return scene.Distance(k, 2 * x + 0.5, 2 * y + 0.5) < 1;
}

}  // namespace

GhostBurst::~GhostBurst()
{
    for (CYuvImage& frame : m_vFrames) frame.Release();
}

bool GhostBurst::Draw(const GhostScene& scene, const unsigned* pPlaces, const Exposing& exposing)
{
    std::vector<GhostScene::Scratch> vScratch(static_cast<size_t>(MaxTeam()));
    for (int k = 0; k < kExposures; ++k) {
        CYuvImage& frame = m_vFrames[k];
        if (!frame.Allocate(scene.Width(), scene.Height())) return false;
        const uint32_t nSeed = exposing.nSeed * kExposures + static_cast<uint32_t>(k);
        const auto lightRow = [&](int nBlock, int y, float* pLight) {
            scene.LightRow(y, pPlaces[k], vScratch[static_cast<size_t>(nBlock)], pLight);
        };
        ExposeFrame(Sensor(GainOf(exposing, k), exposing.fNoise, nSeed), lightRow, frame);
        if (exposing.fGreyNoise > 0) AddGreyNoise(exposing.fGreyNoise, nSeed, frame);
    }
    return true;
}

std::vector<GhostTruth> FindGhostTruth(const GhostScene& scene, const Exposing& exposing)
{
    const int w = scene.Width() / 2, h = scene.Height() / 2;
    std::vector<GhostTruth> vTruth(static_cast<size_t>(w) * static_cast<size_t>(h), GhostTruth::kStill);
    std::vector<int> vDark, vBright;
    for (int k = 0; k + 1 < GhostBurst::kExposures; ++k) {
        WorkRows rows(scene, GainOf(exposing, k + 1));
        for (int y = 0; y < h; ++y) {
            if (!IsRowOf(scene, k, y) && !IsRowOf(scene, k + 1, y)) continue;
            GhostTruth* pTruth = &vTruth[static_cast<size_t>(y) * static_cast<size_t>(w)];
            rows.Expose(y, 1U << k, vDark);
            rows.Expose(y, 2U << k, vBright);
            for (int x = 0; x < w; ++x) {
                const bool bDark = IsAt(scene, k, x, y), bBright = IsAt(scene, k + 1, x, y);
                if (!bDark && !bBright) continue;
                const size_t i = static_cast<size_t>(x);
                const bool bGhost = bDark != bBright && Shows(vDark[i], vBright[i]);
                pTruth[i] = std::max(pTruth[i], bGhost ? GhostTruth::kGhost : GhostTruth::kPassing);
            }
        }
    }
    return vTruth;
}

}  // namespace vkr::truth
