#include "scene/demo_scene.h"

#include <algorithm>
#include <cmath>

#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"
#include "scene/room.h"

namespace vkr {

namespace {

using scene::Vec3;

constexpr int kMaxSide = 16384;
constexpr int kMaxFrames = 8;
constexpr int kCurveSteps = 8192;  // light up to 16 times white

bool AreValid(const SceneParams& params)
{
    const auto isSide = [](int n) { return n >= 2 && n <= kMaxSide && n % 2 == 0; };
    return isSide(params.nWidth) && isSide(params.nHeight) && params.nExposures >= 1 &&
           params.nExposures <= kMaxFrames && params.fStops >= 0 && params.fStops <= 8 && params.fNoise >= 0;
}

// 2 to the power of f, by halving squares: the same bits everywhere.
float PowerOfTwo(float f)
{
    const float fWhole = std::floor(f);
    float fRest = f - fWhole, fRoot = 2, fResult = std::ldexp(1.0f, static_cast<int>(fWhole));
    for (int i = 0; i < 16; ++i) {
        fRoot = std::sqrt(fRoot);
        fRest *= 2;
        if (fRest < 1) continue;
        fRest -= 1;
        fResult *= fRoot;
    }
    return fResult;
}

// Light to grey value: close to the curve of displays, with a shoulder before white. Indexed by the square root of the
// light, which spends the steps where the eye does and is taken once for all exposures.
class DisplayTable {
public:
    DisplayTable()
    {
        for (int i = 0; i < kCurveSteps; ++i) {
            const float fRoot = static_cast<float>(i) / kStepsToWhite;
            const float f1 = std::sqrt(Shoulder(fRoot * fRoot)), f2 = std::sqrt(f1), f3 = std::sqrt(f2);
            m_vGrey[i] = 255 * scene::Clamp01(0.585122381f * f1 + 0.783140355f * f2 - 0.368262736f * f3);
        }
        m_vGrey[0] = 0;
    }
    float operator()(float fRoot) const
    {
        return m_vGrey[static_cast<int>(std::min(fRoot * kStepsToWhite + 0.5f, kCurveSteps - 1.0f))];
    }

private:
    static constexpr float kStepsToWhite = 2048;

    static float Shoulder(float fLight)
    {
        constexpr float fStart = 0.8f;
        if (fLight < fStart) return fLight;
        return fStart + (1 - fStart) * (fLight - fStart) / (fLight - fStart + 0.5f);
    }

    float m_vGrey[kCurveSteps];
};

// Rays per pixel and direction: small pictures are looked at, large ones are measured.
int GridOf(const SceneParams& params)
{
    const int64_t nPixels = static_cast<int64_t>(params.nWidth) * params.nHeight;
    return nPixels <= 1500000 ? 3 : (nPixels <= 5000000 ? 2 : 1);
}

// Mean of what nGrid x nGrid rays through one pixel bring back, with the lens's fall-off, as square roots.
Vec3 PixelLight(const SceneParams& params, int nGrid, int nX, int nY)
{
    Vec3 sum{};
    for (int k = 0; k < nGrid * nGrid; ++k) {
        const int nColumn = k % nGrid, nRow = k / nGrid;
        const float fX = static_cast<float>(nX) + (static_cast<float>(nColumn) + 0.5f) / static_cast<float>(nGrid);
        const float fY = static_cast<float>(nY) + (static_cast<float>(nRow) + 0.5f) / static_cast<float>(nGrid);
        const float fScale = 1.0f / static_cast<float>(params.nHeight);
        const float u = (fX - 0.5f * static_cast<float>(params.nWidth)) * fScale;
        const float v = (0.5f * static_cast<float>(params.nHeight) - fY) * fScale;
        sum = sum + scene::RoomRadiance({u, v, 1}) * (1 / (1 + 0.25f * (u * u + v * v)));
    }
    const Vec3 mean = sum * (1.0f / static_cast<float>(nGrid * nGrid));
    return {std::sqrt(mean.x), std::sqrt(mean.y), std::sqrt(mean.z)};
}

// Bell-shaped, mean 0, standard deviation 1: the sum of the four bytes of a hash. They are uniform over 0 .. 255, whose
// variance is (256 * 256 - 1) / 12.
float Noise(int nX, int nY, uint32_t nSeed)
{
    const uint32_t nBits = scene::HashBits(static_cast<uint32_t>(nX), static_cast<uint32_t>(nY), nSeed);
    const int nSum = static_cast<int>((nBits & 255) + (nBits >> 8 & 255) + (nBits >> 16 & 255) + (nBits >> 24));
    return static_cast<float>(nSum - 510) * (1.0f / 147.8f);
}

uint8_t Grey(float f)
{
    return static_cast<uint8_t>(std::floor(std::clamp(f, 0.0f, 255.0f) + 0.5f));
}

// Two rows of one exposure from two rows of light, which come as square roots.
class Exposure {
public:
    Exposure(const SceneParams& params, int nIndex, const DisplayTable& curve)
        : m_curve(curve),
          m_fRootGain(PowerOfTwo(0.5f * params.fStops * static_cast<float>(StepsFromNormal(params, nIndex)))),
          m_fNoise(params.fNoise),
          m_nSeed(scene::HashBits(params.nSeed * 16 + static_cast<uint32_t>(nIndex)))
    {
    }

    void DrawRowPair(const Vec3* pLight, int nPair, CYuvImage& frame) const
    {
        uint8_t* pUV = frame.RowUV(nPair);
        for (int x = 0; x < frame.nWidth; x += 2) {
            Vec3 sum{};
            for (int k = 0; k < 4; ++k) {
                const int nX = x + k % 2, nY = 2 * nPair + k / 2;
                const Vec3 coded = Coded(pLight[(k / 2) * frame.nWidth + nX]);
                frame.RowY(nY)[nX] = Luma(coded, nX, nY);
                sum = sum + coded;
            }
            DrawChroma(sum * 0.25f, x, nPair, pUV + x);
        }
    }

private:
    static int StepsFromNormal(const SceneParams& params, int nIndex) { return nIndex - (params.nExposures - 1) / 2; }

    Vec3 Coded(Vec3 root) const
    {
        return {m_curve(root.x * m_fRootGain), m_curve(root.y * m_fRootGain), m_curve(root.z * m_fRootGain)};
    }

    // Less noise in the highlights, where the sensor counts more light.
    float NoiseScale(float fLuma) const { return m_fNoise * (1.25f - 0.9f * fLuma * (1.0f / 255)); }

    uint8_t Luma(Vec3 coded, int nX, int nY) const
    {
        const float fLuma = 0.299f * coded.x + 0.587f * coded.y + 0.114f * coded.z;
        return Grey(fLuma + NoiseScale(fLuma) * Noise(nX, nY, m_nSeed));
    }

    void DrawChroma(Vec3 coded, int nX, int nPair, uint8_t* pPair) const
    {
        const float fLuma = 0.299f * coded.x + 0.587f * coded.y + 0.114f * coded.z;
        const float fScale = 0.5f * NoiseScale(fLuma);
        pPair[0] = Grey(128 + (coded.z - fLuma) * (0.5f / 0.886f) + fScale * Noise(nX, nPair, m_nSeed + 1));
        pPair[1] = Grey(128 + (coded.x - fLuma) * (0.5f / 0.701f) + fScale * Noise(nX, nPair, m_nSeed + 2));
    }

    const DisplayTable& m_curve;
    float m_fRootGain, m_fNoise;
    uint32_t m_nSeed;
};

bool AllocateFrames(const SceneParams& params, CYuvImage* vFrames)
{
    for (int k = 0; k < params.nExposures; ++k) {
        if (!vFrames[k].Allocate(params.nWidth, params.nHeight)) return false;
    }
    return true;
}

bool DrawFrames(const SceneParams& params, CYuvImage* vFrames)
{
    if (!AllocateFrames(params, vFrames)) return false;
    HeapBuffer<Vec3> vLight;  // two rows per thread
    const size_t nRowPair = 2 * static_cast<size_t>(params.nWidth);
    if (!vLight.Allocate(nRowPair * static_cast<size_t>(MaxTeam()))) return false;
    const DisplayTable curve;
    const int nGrid = GridOf(params);
    ParallelRows(params.nHeight / 2, [&](RowBlock block) {
        Vec3* pLight = vLight.Data() + nRowPair * static_cast<size_t>(block.nIndex);
        for (int nPair = block.nBegin; nPair < block.nEnd; ++nPair) {
            for (int i = 0; i < 2 * params.nWidth; ++i) {
                pLight[i] = PixelLight(params, nGrid, i % params.nWidth, 2 * nPair + i / params.nWidth);
            }
            for (int k = 0; k < params.nExposures; ++k) {
                Exposure(params, k, curve).DrawRowPair(pLight, nPair, vFrames[k]);
            }
        }
    });
    return true;
}

}  // namespace

bool DrawDemoBurst(const SceneParams& params, CYuvImage* vFrames)
{
    if (!AreValid(params)) return false;
    if (DrawFrames(params, vFrames)) return true;
    for (int k = 0; k < params.nExposures; ++k) vFrames[k].Release();
    return false;
}

}  // namespace vkr
