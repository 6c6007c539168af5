#include "truth/ghost_scene.h"

#include <algorithm>
#include <cmath>

#include "truth/stops.h"
#include "truth/truth_random.h"

namespace vkr::truth {

namespace {

constexpr float kBackTint[LightMap::kChannels] = {1.05f, 1, 0.92f, 1};
constexpr double kSmallest = 0.04, kLargest = 0.1;   // radius of the disc, of the width
constexpr double kShortStep = 0.8, kLongStep = 1.8;  // radii
constexpr double kRange = 1.5;                       // stops of the gradient from one side to the other, at least
constexpr double kLeastContrast = 1.2, kMost = 2.5;  // stops between the disc and what is behind it
constexpr double kMargin = 1.1;                      // radii between a centre and the border of the picture

float Uniform(TruthRandom& random, double fFrom, double fTo)
{
    return static_cast<float>(random.Uniform(fFrom, fTo));
}

// The middle of three places on a line in any direction that leaves all three inside.
void ScatterPlaces(int w, int h, float fRadius, float fStep, TruthRandom& random, Point* vPlaces)
{
    const double fMargin = kMargin * fRadius;
    double dx = 0, dy = 0;
    random.InDisc(dx, dy, 0.1);
    const double fLength = std::sqrt(dx * dx + dy * dy);
    dx *= fStep * fRadius / fLength;
    dy *= fStep * fRadius / fLength;
    const auto middle = [&](int nSide, double fMove) {
        const double fFree = std::max(0.0, 0.5 * nSide - fMargin - std::abs(fMove));
        return 0.5 * nSide + random.Uniform(-fFree, fFree);
    };
    const Point centre{middle(w, dx), middle(h, dy)};
    for (int k = 0; k < GhostScene::kPlaces; ++k) {
        vPlaces[k] = {std::round(centre.x + (k - 1) * dx), std::round(centre.y + (k - 1) * dy)};
    }
}

}  // namespace

GhostScene::GhostScene(const SceneParams& params)
    : m_nWidth(params.nWidth),
      m_nHeight(params.nHeight),
      m_texture(params.nWidth, params.nHeight, 2 * params.nSeed + 1),
      m_discTexture(params.nWidth / 4 + 8, params.nWidth / 4 + 8, 2 * params.nSeed + 2)
{
    TruthRandom random(params.nSeed + 0x67686f7374U);
    const double fRange = random.Uniform(kRange, 2 * kRange);
    double dx = 0, dy = 0;
    random.InDisc(dx, dy, 0.3);
    m_fMiddle = Uniform(random, -3.2, -2.2);
    m_fAcross = static_cast<float>(dx * fRange / m_nWidth);
    m_fDown = static_cast<float>(dy * fRange / m_nHeight);
    m_fContrast = Uniform(random, 0.3, 1.2);
    m_fDiscContrast = Uniform(random, 0, 1);
    m_fRadius = Uniform(random, kSmallest, kLargest) * static_cast<float>(m_nWidth);
    const float fStep = params.fStep > 0 ? params.fStep : Uniform(random, kShortStep, kLongStep);
    ScatterPlaces(m_nWidth, m_nHeight, m_fRadius, fStep, random, m_vPlaces);
    const double fSign = random.Below(2) == 0 ? -1 : 1;
    const double x = m_vPlaces[1].x - 0.5 * m_nWidth, y = m_vPlaces[1].y - 0.5 * m_nHeight;
    const float fBehind = m_fMiddle + m_fAcross * static_cast<float>(x) + m_fDown * static_cast<float>(y);
    const float fLight = TwoToThe(fBehind + Uniform(random, kLeastContrast, kMost) * static_cast<float>(fSign));
    for (float& f : m_vDisc) f = fLight * TwoToThe(Uniform(random, -0.4, 0.4));
}

double GhostScene::Distance(int k, double x, double y) const
{
    const double dx = x - m_vPlaces[k].x, dy = y - m_vPlaces[k].y;
    return std::sqrt(dx * dx + dy * dy) / m_fRadius;
}

void GhostScene::LightRow(int y, unsigned nPlaces, Scratch& scratch, float* pLight) const
{
    scratch.vStops.resize(static_cast<size_t>(m_nWidth));
    m_texture.Row(y, m_nWidth, scratch.vSums, scratch.vStops.data());
    const float fLeft = m_fMiddle - 0.5f * m_fAcross * static_cast<float>(m_nWidth) +
                        m_fDown * (static_cast<float>(y) - 0.5f * static_cast<float>(m_nHeight));
    for (int x = 0; x < m_nWidth; ++x) {
        const float fLight =
            TwoToThe(fLeft + m_fAcross * static_cast<float>(x) + m_fContrast * scratch.vStops[static_cast<size_t>(x)]);
        for (int c = 0; c < LightMap::kChannels; ++c) pLight[LightMap::kChannels * x + c] = fLight * kBackTint[c];
    }
    for (int k = 0; k < kPlaces; ++k) {
        if (nPlaces >> k & 1) PaintDisc(m_vPlaces[k], y, scratch, pLight);
    }
}

// The rim is blended by how much of a pixel the disc covers.
void GhostScene::PaintDisc(Point place, int y, Scratch& scratch, float* pLight) const
{
    const int nReach = static_cast<int>(m_fRadius) + 2;
    const int dy = y - static_cast<int>(place.y), nLeft = static_cast<int>(place.x) - nReach;
    if (dy < -nReach || dy > nReach) return;
    scratch.vStops.resize(static_cast<size_t>(2 * nReach + 1));
    m_discTexture.Row(dy + nReach, 2 * nReach + 1, scratch.vSums, scratch.vStops.data());
    for (int i = std::max(0, -nLeft); i <= 2 * nReach && nLeft + i < m_nWidth; ++i) {
        const float fDx = static_cast<float>(i - nReach), fDy = static_cast<float>(dy);
        const float fCover = std::clamp(0.5f + m_fRadius - std::sqrt(fDx * fDx + fDy * fDy), 0.0f, 1.0f);
        const float fTexture = TwoToThe(m_fDiscContrast * scratch.vStops[static_cast<size_t>(i)]);
        float* pPixel = pLight + LightMap::kChannels * (nLeft + i);
        for (int c = 0; c < LightMap::kChannels; ++c) pPixel[c] += fCover * (fTexture * m_vDisc[c] - pPixel[c]);
    }
}

}  // namespace vkr::truth
