#include <initializer_list>

#include "scene/room.h"

namespace vkr::scene {

namespace {

constexpr float Least(float a, float b)
{
    return a < b ? a : b;
}
constexpr float Largest(float a, float b)
{
    return a > b ? a : b;
}

// Slopes from the eye under which anything between two corners can be seen: what lies outside need not be tried.
constexpr Rect Silhouette(Vec3 low, Vec3 high)
{
    return {Least(low.x / low.z, low.x / high.z), Largest(high.x / low.z, high.x / high.z),
            Least((low.y - kEye.y) / low.z, (low.y - kEye.y) / high.z),
            Largest((high.y - kEye.y) / low.z, (high.y - kEye.y) / high.z)};
}

struct Box {
    Vec3 low, high;
    Surface surface;
    Rect seen = Silhouette(low, high);
};

struct Ball {
    Vec3 centre, radius;
    Surface surface;
    Rect seen = Silhouette({centre.x - radius.x, centre.y - radius.y, centre.z - radius.z},
                           {centre.x + radius.x, centre.y + radius.y, centre.z + radius.z});
};

constexpr Box kBoxes[] = {
    {{0.45f, 0.72f, 2.0f}, {1.75f, kTableHeight, 2.85f}, Surface::kWood},
    {{0.50f, 0, 2.05f}, {0.56f, 0.72f, 2.11f}, Surface::kWood},
    {{1.64f, 0, 2.05f}, {1.70f, 0.72f, 2.11f}, Surface::kWood},
    {{0.50f, 0, 2.74f}, {0.56f, 0.72f, 2.80f}, Surface::kWood},
    {{1.64f, 0, 2.74f}, {1.70f, 0.72f, 2.80f}, Surface::kWood},
    {{1.25f, 0, 4.25f}, {2.5f, 2.1f, kBackZ}, Surface::kShelf},
    {{kWindow.fLeft - 0.12f, kWindow.fBottom - 0.07f, 4.42f},
     {kWindow.fRight + 0.12f, kWindow.fBottom - 0.02f, kBackZ},
     Surface::kCeiling},
    {{-2.25f, 2.53f, 4.44f}, {1.05f, 2.56f, 4.47f}, Surface::kBrass},
    {{1.385f, 0.78f, 2.485f}, {1.415f, 1.15f, 2.515f}, Surface::kBrass},
};

constexpr Ball kBalls[] = {
    {kHead, {0.125f, 0.17f, 0.14f}, Surface::kFace},
    {{-0.637f, 1.545f, 1.80f}, {0.139f, 0.165f, 0.145f}, Surface::kHair},
    {{-0.62f, 1.28f, 1.78f}, {0.06f, 0.14f, 0.065f}, Surface::kSkin},
    {{-0.62f, 1.095f, 1.80f}, {0.245f, 0.12f, 0.12f}, Surface::kShirt},
    {{-0.62f, 0.70f, 1.80f}, {0.225f, 0.47f, 0.15f}, Surface::kShirt},
    {{-0.86f, 0.76f, 1.80f}, {0.075f, 0.36f, 0.085f}, Surface::kShirt},
    {{-0.38f, 0.76f, 1.80f}, {0.075f, 0.36f, 0.085f}, Surface::kShirt},
    {{1.4f, 0.785f, 2.5f}, {0.09f, 0.022f, 0.09f}, Surface::kBrass},
    {{0.72f, 0.827f, 2.32f}, {0.057f, 0.057f, 0.057f}, Surface::kOrange},
    {{0.86f, 0.827f, 2.42f}, {0.057f, 0.057f, 0.057f}, Surface::kOrange},
    {{0.84f, 0.825f, 2.24f}, {0.055f, 0.055f, 0.055f}, Surface::kOrange},
};

struct Nearest {
    float t;
    Hit hit;
};

float Component(Vec3 v, int nAxis)
{
    return nAxis == 0 ? v.x : (nAxis == 1 ? v.y : v.z);
}

Vec3 AxisNormal(int nAxis, float fSign)
{
    return {nAxis == 0 ? fSign : 0, nAxis == 1 ? fSign : 0, nAxis == 2 ? fSign : 0};
}

void Keep(Nearest& nearest, Vec3 direction, float t, Surface surface, Vec3 normal, Vec3 local)
{
    nearest = {t, {surface, kEye + direction * t, normal, local}};
}

Nearest TraceWalls(Vec3 d)
{
    Nearest nearest{};
    Keep(nearest, d, kBackZ, Surface::kBackWall, {0, 0, -1}, {});
    const float tSide = d.x != 0 ? kSideX / (d.x > 0 ? d.x : -d.x) : nearest.t;
    if (tSide < nearest.t) Keep(nearest, d, tSide, Surface::kSideWall, {d.x > 0 ? -1.0f : 1.0f, 0, 0}, {});
    const float tUp = d.y > 0 ? (kCeilingY - kEye.y) / d.y : nearest.t;
    if (tUp < nearest.t) Keep(nearest, d, tUp, Surface::kCeiling, {0, -1, 0}, {});
    const float tDown = d.y < 0 ? -kEye.y / d.y : nearest.t;
    if (tDown < nearest.t) Keep(nearest, d, tDown, Surface::kFloor, {0, 1, 0}, {});
    return nearest;
}

// Slabs; a ray along an axis passes the two other pairs by.
void TraceBox(const Box& box, Vec3 d, Nearest& nearest)
{
    float tEnter = 0, tLeave = nearest.t;
    int nAxis = 2;
    for (int i = 0; i < 3; ++i) {
        const float fDirection = Component(d, i), fEye = Component(kEye, i);
        const float fLow = Component(box.low, i) - fEye, fHigh = Component(box.high, i) - fEye;
        if (fDirection == 0) {
            if (fLow > 0 || fHigh < 0) return;
            continue;
        }
        const float tNear = (fDirection > 0 ? fLow : fHigh) / fDirection;
        const float tFar = (fDirection > 0 ? fHigh : fLow) / fDirection;
        if (tNear > tEnter) {
            tEnter = tNear;
            nAxis = i;
        }
        if (tFar < tLeave) tLeave = tFar;
        if (tEnter >= tLeave) return;
    }
    if (tEnter <= 0) return;
    Keep(nearest, d, tEnter, box.surface, AxisNormal(nAxis, Component(d, nAxis) > 0 ? -1.0f : 1.0f), {});
}

void TraceBall(const Ball& ball, Vec3 d, Nearest& nearest)
{
    const Vec3 o = (kEye - ball.centre) / ball.radius;
    const Vec3 v = d / ball.radius;
    const float a = Dot(v, v), b = Dot(o, v), c = Dot(o, o) - 1;
    const float fRoot = b * b - a * c;
    if (fRoot <= 0) return;
    const float t = (-b - std::sqrt(fRoot)) / a;
    if (t <= 0 || t >= nearest.t) return;
    const Vec3 local = o + v * t;
    Keep(nearest, d, t, ball.surface, Unit(local / ball.radius), local);
}

// A cone cut off at both ends around the lamp, narrower at the top; both sides of it are seen.
void TraceLampShade(Vec3 d, Nearest& nearest)
{
    constexpr float fBottom = 1.12f, fTop = 1.40f, fApex = 1.82f, fSlope = 0.31f;  // radius = slope * (apex - y)
    const float oX = kEye.x - kLampLight.x, oZ = kEye.z - kLampLight.z, oY = fApex - kEye.y;
    const float k = fSlope * fSlope;
    const float a = d.x * d.x + d.z * d.z - k * d.y * d.y;
    const float b = oX * d.x + oZ * d.z + k * oY * d.y;
    const float c = oX * oX + oZ * oZ - k * oY * oY;
    const float fRoot = b * b - a * c;
    if (fRoot <= 0 || a == 0) return;
    for (const float fSign : {-1.0f, 1.0f}) {
        const float t = (-b + fSign * std::sqrt(fRoot)) / a;
        const float y = kEye.y + d.y * t;
        if (t <= 0 || t >= nearest.t || !Within(y, fBottom, fTop)) continue;
        Keep(nearest, d, t, Surface::kLampShade, {0, 0, -1}, {0, (y - fBottom) / (fTop - fBottom), fSign});
        return;
    }
}

// Two flat panels whose hem swings a little; the folds are in their shading.
void TraceCurtains(Vec3 d, Nearest& nearest)
{
    constexpr float fDepth = 4.5f;
    const float t = fDepth;
    if (t >= nearest.t) return;
    const float x = d.x * t, y = kEye.y + d.y * t;
    if (!Within(y, 0.12f + 0.02f * Wave(9 * x), 2.54f)) return;
    const float fGather = 0.10f * SmoothStep(2.5f, 1.2f, y);  // fuller towards the floor
    const bool bLeft = Within(x, -2.15f, -1.50f + fGather), bRight = Within(x, 0.30f - fGather, 0.95f);
    if (bLeft || bRight) Keep(nearest, d, t, Surface::kCurtain, {0, 0, -1}, {});
}

}  // namespace

Hit TraceRoom(Vec3 direction)
{
    Nearest nearest = TraceWalls(direction);
    TraceCurtains(direction, nearest);
    for (const Box& box : kBoxes) {
        if (box.seen.Contains(direction.x, direction.y)) TraceBox(box, direction, nearest);
    }
    for (const Ball& ball : kBalls) {
        if (ball.seen.Contains(direction.x, direction.y)) TraceBall(ball, direction, nearest);
    }
    TraceLampShade(direction, nearest);
    return nearest.hit;
}

}  // namespace vkr::scene
