#include "scene/room.h"

namespace vkr::scene {

namespace {

constexpr float kBorder = 0.06f, kBar = 0.022f;

Vec3 Sky(float u, float v)
{
    const float fHeight = Clamp01((v + 0.02f) / 0.24f);
    const Vec3 clear = Mix(Vec3{2.75f, 2.85f, 2.95f}, Vec3{0.95f, 1.55f, 2.75f}, fHeight);
    const float fCloud = SmoothStep(0.46f, 0.72f, CloudNoise(u * 11, v * 26, 40));
    const float fShade = 0.82f + 0.18f * CloudNoise(u * 24 + 9, v * 50, 44);
    return Mix(clear, Vec3{3.6f, 3.55f, 3.45f} * fShade, fCloud);
}

// Height of a ridge over the horizon, in slope.
float Ridge(float u, float fScale, float fHeight, uint32_t nSeed)
{
    return fHeight * (CloudNoise(u * fScale, 0.5f, nSeed) - 0.35f);
}

Vec3 Field(float u, float v)
{
    const float fAcross = u / (0.02f - v), fAway = 1 / (0.02f - v);  // the plain in perspective
    const float fStripe = Wave(fAcross * 0.9f + 0.1f * fAway);
    const Vec3 grass = Mix(Vec3{0.40f, 0.62f, 0.20f}, Vec3{0.62f, 0.70f, 0.26f}, fStripe);
    return grass * (0.8f + 0.4f * ValueNoise(fAcross * 14, fAway * 3, 61));
}

bool HouseAt(float u, float v, Vec3& colour)
{
    const float x = (u + 0.235f) / 0.045f, y = (v + 0.052f) / 0.045f;  // 0 .. 1 over the front
    if (Within(x, 0, 1) && Within(y, 0, 0.62f)) {
        const bool bPane = Within(Fraction(x * 3), 0.3f, 0.7f) && Within(y, 0.2f, 0.45f);
        colour = bPane ? Vec3{0.35f, 0.45f, 0.60f} : Vec3{1.75f, 1.62f, 1.40f};
        return true;
    }
    const float fRoof = 1 - 1.8f * (x < 0.5f ? 0.5f - x : x - 0.5f);
    if (!Within(y, 0.62f, 0.62f + 0.42f * fRoof)) return false;
    colour = Vec3{1.15f, 0.42f, 0.28f} * (0.85f + 0.3f * Wave(y * 22));
    return true;
}

// A row of round crowns along the foot of the hills.
bool TreeAt(float u, float v, Vec3& colour)
{
    const float fCell = 0.024f;
    const int nTree = FloorInt(u / fCell);
    for (int i = nTree - 1; i <= nTree + 1; ++i) {
        const float fX = (static_cast<float>(i) + 0.3f + 0.4f * Hash01(i, 0, 71)) * fCell;
        const float fSize = 0.009f + 0.010f * Hash01(i, 1, 71);
        const float dX = (u - fX) / fSize, dY = (v + 0.044f - 0.7f * fSize) / (1.15f * fSize);
        const float fEdge = 1 + 0.35f * (ValueNoise(u * 420, v * 420, 72) - 0.5f);
        if (dX * dX + dY * dY > fEdge) continue;
        const float fLit = 0.55f + 0.35f * (dX + dY) + 0.5f * (ValueNoise(u * 700, v * 700, 73) - 0.5f);
        colour = Vec3{0.26f, 0.46f, 0.15f} * (0.5f + 1.1f * Clamp01(fLit));
        return true;
    }
    return false;
}

}  // namespace

bool IsGlass(float x, float y)
{
    const Rect pane{kWindow.fLeft + kBorder, kWindow.fRight - kBorder, kWindow.fBottom + kBorder,
                    kWindow.fTop - kBorder};
    const float fMiddle = 0.5f * (kWindow.fLeft + kWindow.fRight);
    return pane.Contains(x, y) && !Within(x, fMiddle - kBar, fMiddle + kBar) && !Within(y, 1.88f - kBar, 1.88f + kBar);
}

Vec3 WindowView(Vec3 direction)
{
    const float u = direction.x, v = direction.y;
    Vec3 colour{};
    if (HouseAt(u, v, colour) || TreeAt(u, v, colour)) return colour;
    if (v < -0.03f) return Field(u, v);
    if (v < -0.03f + Ridge(u, 22, 0.055f, 51)) {
        return Vec3{0.55f, 0.80f, 0.42f} * (0.75f + 0.5f * CloudNoise(u * 90, v * 180, 53));
    }
    if (v < -0.01f + Ridge(u, 9, 0.12f, 50)) {
        return Vec3{1.05f, 1.30f, 1.55f} * (0.88f + 0.24f * CloudNoise(u * 60, v * 90, 54));
    }
    return Sky(u, v);
}

}  // namespace vkr::scene
