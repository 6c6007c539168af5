#pragma once

#include "scene/scene_math.h"

namespace vkr::scene {

// The room, in metres: x to the right, y up, z away from the camera, which stands in the origin of x and z at eye
// height. Light is linear; 1 is the white of the middle exposure.

constexpr Vec3 kEye{0, 1.45f, 0};
constexpr float kSideX = 2.7f, kCeilingY = 2.8f, kBackZ = 4.6f;

struct Rect {
    float fLeft, fRight, fBottom, fTop;

    constexpr bool Contains(float x, float y) const { return Within(x, fLeft, fRight) && Within(y, fBottom, fTop); }
};

constexpr Rect kWindow{-1.55f, 0.35f, 0.95f, 2.35f};  // opening in the back wall
constexpr Rect kTableTop{0.45f, 1.75f, 2.0f, 2.85f};  // x and z
constexpr float kTableHeight = 0.77f;
constexpr Vec3 kHead{-0.62f, 1.50f, 1.75f};
constexpr Vec3 kLampLight{1.4f, 1.26f, 2.5f};

enum class Surface {
    kFloor,
    kCeiling,
    kSideWall,
    kBackWall,
    kCurtain,
    kShelf,
    kWood,
    kLampShade,
    kBrass,
    kOrange,
    kFace,
    kHair,
    kSkin,
    kShirt,
};

// What a ray from the eye meets first.
struct Hit {
    Surface surface;
    Vec3 position;
    Vec3 normal;  // towards the room
    Vec3 local;   // on round things: the place on the unit sphere; else 0
};

// direction has z 1: x and y are the slopes of the ray.
Hit TraceRoom(Vec3 direction);

// Share of the light that falls on a surface, for each of R, G, B; for kLampShade what it sends out itself.
Vec3 SurfaceColour(const Hit& hit);

// Light that falls on a surface.
Vec3 LightAt(const Hit& hit);

// What is seen through the glass.
Vec3 WindowView(Vec3 direction);

// Glass, not bars, at a place of the back wall.
bool IsGlass(float x, float y);

// Light that a ray from the eye brings back.
Vec3 RoomRadiance(Vec3 direction);

}  // namespace vkr::scene
