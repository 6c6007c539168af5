#include "truth/light_map.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "foundation/parallel_rows.h"
#include "truth/light_shapes.h"
#include "truth/octave_texture.h"
#include "truth/stops.h"
#include "truth/truth_random.h"

namespace vkr::truth {

namespace {

// Four samples as one value: a type of the compilers that we build with.
using Pixel = float __attribute__((vector_size(sizeof(float) * LightMap::kChannels)));

inline Pixel LoadPixel(const float* p)
{
    Pixel pixel;
    std::memcpy(&pixel, p, sizeof(pixel));
    return pixel;
}

constexpr float kBackground[LightMap::kChannels] = {0.2f, 0.2f, 0.2f, 1.0f};

// Light that falls off around a place: fLight / (1 + distance squared * fNear).
struct Lamp {
    float x, y, fLight, fNear;
};

constexpr int kLamps = 3;
constexpr float kAmbient = 0.25f;

void PlaceLamps(int w, int h, int nUnit, TruthRandom& random, Lamp* vLamps)
{
    for (int i = 0; i < kLamps; ++i) {
        const double fReach = random.Uniform(0.15, 0.5) * nUnit;
        vLamps[i] = {static_cast<float>(random.Uniform(0, w)), static_cast<float>(random.Uniform(0, h)),
                     static_cast<float>(random.Uniform(0.5, 2)), static_cast<float>(1 / (fReach * fReach))};
    }
}

// Light on the row, as it falls on it and as the texture throws it back.
void ShadeRow(const Lamp* vLamps, int y, int nWidth, float* pStops, float* pRow)
{
    for (int x = 0; x < nWidth; ++x) {
        float fLight = kAmbient;
        for (int i = 0; i < kLamps; ++i) {
            const float dx = static_cast<float>(x) - vLamps[i].x, dy = static_cast<float>(y) - vLamps[i].y;
            fLight += vLamps[i].fLight / (1 + (dx * dx + dy * dy) * vLamps[i].fNear);
        }
        pStops[x] = fLight * TwoToThe(pStops[x] * pRow[LightMap::kChannels * x + 3]);
    }
    for (int x = 0; x < nWidth; ++x) {
        for (int c = 0; c < LightMap::kChannels; ++c) pRow[LightMap::kChannels * x + c] *= pStops[x];
    }
}

// Weights of the four values around a place f beyond the second.
void SplineWeights(float f, float* pWeights)
{
    const float g = 1 - f;
    pWeights[0] = g * g * g * (1.0f / 6);
    pWeights[1] = 2.0f / 3 - 0.5f * f * f * (2 - f);
    pWeights[2] = 2.0f / 3 - 0.5f * g * g * (2 - g);
    pWeights[3] = f * f * f * (1.0f / 6);
}

}  // namespace

void LightMap::Draw(int w, int h, int nUnit, uint32_t nSeed)
{
    const size_t nFloats = static_cast<size_t>(w) * static_cast<size_t>(h) * kChannels;
    if (nFloats > m_nCapacity) {
        m_pLight.reset();
        m_pLight.reset(new float[nFloats]);
        m_nCapacity = nFloats;
    }
    m_nWidth = w;
    m_nHeight = h;
    TruthRandom random(nSeed);
    Lamp vLamps[kLamps];
    PlaceLamps(w, h, nUnit, random, vLamps);
    const std::vector<LightShape> vShapes = ScatterShapes(w, h, nUnit, random);
    const OctaveTexture texture(w, h, random.Bits());
    struct Scratch {
        std::vector<float> vStops, vSums;
    };
    std::vector<Scratch> vScratch(static_cast<size_t>(MaxTeam()));
    for (Scratch& scratch : vScratch) scratch.vStops.resize(static_cast<size_t>(w));
    ParallelRows(h, [&](RowBlock rows) {
        Scratch& scratch = vScratch[static_cast<size_t>(rows.nIndex)];
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            for (int i = 0; i < w * kChannels; ++i) Row(y)[i] = kBackground[i % kChannels];
        }
        for (const LightShape& shape : vShapes) {
            const int nFirst = std::max(rows.nBegin, static_cast<int>(shape.y - shape.fReach));
            const int nLast = std::min(rows.nEnd - 1, static_cast<int>(shape.y + shape.fReach) + 1);
            for (int y = nFirst; y <= nLast; ++y) PaintShapeRow(shape, y, w, Row(y));
        }
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            texture.Row(y, w, scratch.vSums, scratch.vStops.data());
            ShadeRow(vLamps, y, w, scratch.vStops.data(), Row(y));
        }
    });
}

void LightMap::SampleRow(const Homography& toMap, int y, int nPixels, float* pLight) const
{
    const double* m = toMap.v;
    const double fX = m[1] * y + m[2], fY = m[4] * y + m[5], fZ = m[7] * y + m[8];
    for (int x = 0; x < nPixels; ++x) {
        const double fScale = 1 / (m[6] * x + fZ);
        const double fColumn = std::clamp((m[0] * x + fX) * fScale, 1.0, m_nWidth - 2.001);
        const double fRow = std::clamp((m[3] * x + fY) * fScale, 1.0, m_nHeight - 2.001);
        const int nColumn = static_cast<int>(fColumn), nRow = static_cast<int>(fRow);
        float vAcross[4], vDown[4];
        SplineWeights(static_cast<float>(fColumn - nColumn), vAcross);
        SplineWeights(static_cast<float>(fRow - nRow), vDown);
        Pixel sum{};
        for (int j = 0; j < 4; ++j) {
            const float* p = Row(nRow - 1 + j) + (nColumn - 1) * kChannels;
            sum += vDown[j] * (vAcross[0] * LoadPixel(p) + vAcross[1] * LoadPixel(p + kChannels) +
                               vAcross[2] * LoadPixel(p + 2 * kChannels) + vAcross[3] * LoadPixel(p + 3 * kChannels));
        }
        std::memcpy(pLight + kChannels * x, &sum, sizeof(sum));
    }
}

float LightMap::MedianLight() const
{
    std::vector<float> vLight;
    for (int y = 0; y < m_nHeight; y += 16) {
        for (int x = 0; x < m_nWidth; x += 16) vLight.push_back(Row(y)[kChannels * x + 1]);
    }
    const auto middle = vLight.begin() + static_cast<std::ptrdiff_t>(vLight.size() / 2);
    std::nth_element(vLight.begin(), middle, vLight.end());
    return *middle;
}

}  // namespace vkr::truth
