#include "truth/sensor_rows.h"

#include <cmath>

#include "scene/scene_math.h"
#include "truth/light_map.h"

namespace vkr::truth {

namespace {

constexpr int kCurveSteps = 4096;
constexpr float kShotVariance = 1.0f / 4000;                // at white: 4000 electrons
constexpr float kReadVariance = 3.0f / 4000 * 3.0f / 4000;  // 3 electrons

// Two comparisons one after the other: the compiler finds the vector minimum and maximum.
inline float Limited(float f, float fMax)
{
    const float fPositive = f > 0 ? f : 0;
    return fPositive < fMax ? fPositive : fMax;
}

// Light 0 .. 1 as the square of nStep / (kCurveSteps - 1), which spends the steps where the eye does. Close to the
// curve of displays by roots that are the same on every machine.
float CodedGrey(int nStep)
{
    const float f1 = static_cast<float>(nStep) / (kCurveSteps - 1), f2 = std::sqrt(f1), f3 = std::sqrt(f2);
    return nStep == 0 ? 0 : 255 * Limited(0.585122381f * f1 + 0.783140355f * f2 - 0.368262736f * f3, 1);
}

// Bell-shaped, mean 0, standard deviation 1: the sum of the four bytes of a hash, whose deviation is 147.8.
inline float Bell(uint32_t nBits)
{
    const uint32_t nPairs = (nBits & 0x00ff00ffU) + (nBits >> 8 & 0x00ff00ffU);
    return static_cast<float>(static_cast<int32_t>((nPairs & 0xffffU) + (nPairs >> 16)) - 510) * (1.0f / 147.8f);
}

inline uint8_t Rounded(float f)
{
    return static_cast<uint8_t>(static_cast<int32_t>(Limited(f, 255) + 0.5f));
}

}  // namespace

Sensor::Sensor(float fGain, float fNoise, uint32_t nSeed) : m_fGain(fGain), m_fNoise(fNoise), m_nSeed(nSeed)
{
    for (int i = 0; i < kCurveSteps; ++i) m_vCurve.push_back(CodedGrey(i));
}

void Sensor::ExposeRow(const float* pLight, int y, int nPixels, int32_t* pIndex, float* pGrey) const
{
    const uint32_t nRowSeed = scene::HashBits(static_cast<uint32_t>(y), 0, m_nSeed);
    const int nSamples = nPixels * LightMap::kChannels;
    const float fGain = m_fGain, fNoise = m_fNoise;
    for (int i = 0; i < nSamples; ++i) {
        const float fCharge = pLight[i] * fGain;
        const float fDeviation = std::sqrt(fCharge * kShotVariance + kReadVariance) * fNoise;
        const float fNoisy = fCharge + fDeviation * Bell(scene::HashBits(nRowSeed + static_cast<uint32_t>(i)));
        pIndex[i] = static_cast<int32_t>(std::sqrt(Limited(fNoisy, 1)) * (kCurveSteps - 1) + 0.5f);
    }
    for (int i = 0; i < nSamples; ++i) pGrey[i] = m_vCurve[static_cast<size_t>(pIndex[i])];
}

void StoreRowPair(const float* pUpper, const float* pLower, int nPixels, uint8_t* pUpperY, uint8_t* pLowerY,
                  uint8_t* pUV)
{
    const auto luma = [](const float* p) { return (77 * p[0] + 150 * p[1] + 29 * p[2]) * (1.0f / 256); };
    for (int x = 0; x < nPixels; ++x) {
        pUpperY[x] = Rounded(luma(pUpper + LightMap::kChannels * x));
        pLowerY[x] = Rounded(luma(pLower + LightMap::kChannels * x));
    }
    for (int x = 0; x < nPixels; x += 2) {
        float vMean[LightMap::kChannels];
        const int i = LightMap::kChannels * x, j = i + LightMap::kChannels;
        for (int c = 0; c < LightMap::kChannels; ++c) {
            vMean[c] = 0.25f * (pUpper[i + c] + pUpper[j + c] + pLower[i + c] + pLower[j + c]);
        }
        pUV[x] = Rounded(128 + (128 * vMean[2] - 85 * vMean[1] - 43 * vMean[0]) * (1.0f / 256));
        pUV[x + 1] = Rounded(128 + (128 * vMean[0] - 107 * vMean[1] - 21 * vMean[2]) * (1.0f / 256));
    }
}

}  // namespace vkr::truth
