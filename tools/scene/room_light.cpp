#include "scene/room.h"

namespace vkr::scene {

namespace {

constexpr Vec3 kTowardsSun{0.35f, 0.62f, 0.70f};  // not of length 1: only its slope matters
constexpr Vec3 kSunLight{2.5f, 2.2f, 1.75f};
constexpr Vec3 kDaylight{1.9f, 2.05f, 2.25f};
constexpr Vec3 kLampColour{1.0f, 0.66f, 0.34f};
constexpr Vec3 kAmbient{0.105f, 0.10f, 0.095f};

// Darker where two walls meet.
float Openness(Vec3 p)
{
    const auto fromEdge = [](float fDistance) { return 0.62f + 0.38f * SmoothStep(0, 0.6f, fDistance); };
    const float fSide = kSideX - (p.x < 0 ? -p.x : p.x);
    return fromEdge(fSide + 0.15f) * fromEdge(p.y + 0.15f) * fromEdge(kCeilingY - p.y + 0.15f) *
           fromEdge(kBackZ - p.z + 0.15f);
}

// The ground below the table sees little of the room.
float UnderTable(const Hit& hit)
{
    if (hit.surface != Surface::kFloor) return 1;
    const float fX = SmoothStep(-0.35f, 0.2f, hit.position.x - kTableTop.fLeft) *
                     SmoothStep(-0.35f, 0.2f, kTableTop.fRight - hit.position.x);
    const float fZ = SmoothStep(-0.35f, 0.2f, hit.position.z - kTableTop.fBottom) *
                     SmoothStep(-0.35f, 0.2f, kTableTop.fTop - hit.position.z);
    return 1 - 0.65f * fX * fZ;
}

// The opening as one patch of light, as seen from the place.
float WindowLight(const Hit& hit)
{
    constexpr float fArea = (kWindow.fRight - kWindow.fLeft) * (kWindow.fTop - kWindow.fBottom);
    const Vec3 centre{0.5f * (kWindow.fLeft + kWindow.fRight), 0.5f * (kWindow.fBottom + kWindow.fTop), kBackZ};
    const Vec3 way = centre - hit.position;
    const float fSquare = Dot(way, way) + 0.4f;
    const float fLength = std::sqrt(fSquare);
    const float fIn = (Dot(way, hit.normal) / fLength + 0.18f) / 1.18f;  // a wide source reaches round the edge
    const float fOut = way.z / fLength;
    return fIn > 0 && fOut > 0 ? fArea * fIn * fOut / (3.14159f * fSquare) : 0;
}

bool TableHidesLamp(Vec3 p)
{
    if (p.y > kTableHeight - 0.06f) return false;
    const float t = (kTableHeight - p.y) / (kLampLight.y - p.y);
    const Vec3 crossing = p + (kLampLight - p) * t;
    return kTableTop.Contains(crossing.x, crossing.z);
}

float LampLight(const Hit& hit)
{
    if (TableHidesLamp(hit.position)) return 0;
    const Vec3 way = kLampLight - hit.position;
    const float fSquare = Dot(way, way) + 0.03f;
    const float fIn = Dot(way, hit.normal) / std::sqrt(fSquare);
    return fIn > 0 ? 0.115f * fIn / fSquare : 0;
}

bool InSun(const Hit& hit)
{
    if (Dot(hit.normal, kTowardsSun) <= 0) return false;
    const float t = (kBackZ - hit.position.z) / kTowardsSun.z;
    return t > 0 && IsGlass(hit.position.x + kTowardsSun.x * t, hit.position.y + kTowardsSun.y * t);
}

// The patch of sun on the floor lights what looks down on it.
float FloorGlow(const Hit& hit)
{
    const Vec3 way = Vec3{-1.4f, 0, 2.7f} - hit.position;
    const float fSquare = Dot(way, way) + 0.5f;
    const float fIn = Dot(way, hit.normal) / std::sqrt(fSquare);
    return fIn > 0 ? 0.16f * fIn / fSquare : 0;
}

// Cloth with daylight behind it, bright over the opening and in the thin parts between the folds.
Vec3 CurtainLight(const Hit& hit, Vec3 front)
{
    const float fBehind = SmoothStep(-0.25f, 0.15f, hit.position.x - kWindow.fLeft) *
                          SmoothStep(-0.25f, 0.15f, kWindow.fRight - hit.position.x) *
                          SmoothStep(-0.3f, 0.2f, hit.position.y - kWindow.fBottom) *
                          SmoothStep(-0.2f, 0.1f, kWindow.fTop - hit.position.y);
    const float fFold = Wave(hit.position.x * 8.5f + 0.25f * ValueNoise(2 * hit.position.x, 0.7f * hit.position.y, 5));
    return front * (0.45f + 0.75f * fFold) + Vec3{1.15f, 1.05f, 0.85f} * (fBehind * (0.35f + 0.65f * fFold));
}

}  // namespace

Vec3 LightAt(const Hit& hit)
{
    const float fDim = UnderTable(hit);
    Vec3 light = kAmbient * (Openness(hit.position) * fDim);
    light = light + kDaylight * (WindowLight(hit) * fDim);
    light = light + kLampColour * LampLight(hit);
    light = light + Vec3{1.0f, 0.8f, 0.55f} * FloorGlow(hit);
    if (InSun(hit)) light = light + kSunLight;
    return hit.surface == Surface::kCurtain ? CurtainLight(hit, light) : light;
}

Vec3 RoomRadiance(Vec3 direction)
{
    const Hit hit = TraceRoom(direction);
    if (hit.surface == Surface::kBackWall && IsGlass(hit.position.x, hit.position.y)) return WindowView(direction);
    const Vec3 colour = SurfaceColour(hit);
    return hit.surface == Surface::kLampShade ? colour : colour * LightAt(hit);
}

}  // namespace vkr::scene
