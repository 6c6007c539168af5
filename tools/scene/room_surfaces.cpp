#include <initializer_list>

#include "scene/room.h"

namespace vkr::scene {

namespace {

// Stripes and a small lozenge, printed, on rough paper.
Vec3 Wallpaper(float fAcross, float y)
{
    const Vec3 ground = Fraction(fAcross / 0.22f) < 0.5f ? Vec3{0.56f, 0.58f, 0.50f} : Vec3{0.60f, 0.62f, 0.54f};
    const float fX = Fraction(fAcross / 0.11f) - 0.5f, fY = Fraction(y / 0.15f) - 0.5f;
    const float fLozenge = (fX < 0 ? -fX : fX) * 1.6f + (fY < 0 ? -fY : fY);
    const Vec3 printed =
        fLozenge < 0.26f ? (fLozenge < 0.14f ? Vec3{0.66f, 0.55f, 0.36f} : Vec3{0.42f, 0.47f, 0.40f}) : ground;
    return printed * (0.94f + 0.12f * ValueNoise(fAcross * 220, y * 220, 11));
}

// Wallpaper over a white skirting board.
Vec3 Wall(float fAcross, float y)
{
    if (y > 0.12f) return Wallpaper(fAcross, y);
    return Vec3{0.80f, 0.79f, 0.75f} * (y > 0.105f ? 0.7f : 1.0f);
}

Vec3 Grain(Vec3 tint, float fAlong, float fAcross, uint32_t nSeed)
{
    const float fRing = Wave(fAcross * 9 + 1.6f * ValueNoise(fAlong * 1.1f, fAcross * 5, nSeed));
    const float fFibre = ValueNoise(fAlong * 14, fAcross * 240, nSeed + 1);
    return tint * (0.74f + 0.2f * fRing + 0.22f * fFibre);
}

Vec3 Rug(float x, float z)
{
    const float fEdge = SmoothStep(0, 0.02f, x - -1.15f) * SmoothStep(0, 0.02f, 1.45f - x);
    const float fBand = Fraction(z / 0.2f);
    const Vec3 wool = fBand < 0.16f ? Vec3{0.75f, 0.68f, 0.52f}
                                    : (fBand < 0.58f ? Vec3{0.48f, 0.13f, 0.12f} : Vec3{0.13f, 0.20f, 0.34f});
    const bool bMotif = Fraction(x / 0.1f) < 0.3f && Within(fBand, 0.3f, 0.44f);
    const Vec3 dyed = bMotif ? Vec3{0.78f, 0.60f, 0.25f} : wool;
    return dyed * (fEdge * (0.82f + 0.36f * ValueNoise(x * 160, z * 160, 14)));
}

Vec3 Floor(Vec3 p)
{
    if (Within(p.x, -1.15f, 1.45f) && Within(p.z, 2.55f, 3.75f)) return Rug(p.x, p.z);
    const float fBoard = p.x / 0.17f;
    const int nBoard = FloorInt(fBoard);
    const float fRow = p.z / 1.3f + Hash01(nBoard, 0, 21);  // boards of 1.3 m, their ends staggered
    const int nRow = FloorInt(fRow);
    const float fTone = 0.78f + 0.4f * Hash01(nBoard, nRow, 22);
    const bool bGap = !Within(Fraction(fBoard), 0.018f, 0.982f) || !Within(Fraction(fRow), 0.003f, 0.997f);
    const Vec3 oak = Grain({0.47f, 0.31f, 0.18f}, p.z + 3.7f * static_cast<float>(nBoard), p.x, 23);
    return oak * (bGap ? 0.35f : fTone);
}

// A picture in a frame on either side wall: hills on the left, a still life of discs on the right.
bool Painting(Vec3 p, Vec3& colour)
{
    const Rect frame = p.x < 0 ? Rect{2.35f, 3.75f, 1.25f, 2.15f} : Rect{2.75f, 3.65f, 1.35f, 2.05f};
    if (!frame.Contains(p.z, p.y)) return false;
    const float u = (p.z - frame.fLeft) / (frame.fRight - frame.fLeft);
    const float v = (p.y - frame.fBottom) / (frame.fTop - frame.fBottom);
    if (!Within(u, 0.05f, 0.95f) || !Within(v, 0.07f, 0.93f)) {
        colour = Vec3{0.50f, 0.37f, 0.16f} * (0.8f + 0.4f * Wave(u * 40 + v * 26));
        return true;
    }
    const float fHill = 0.30f + 0.35f * CloudNoise(u * 3.2f, p.x, 31);
    const Vec3 sky = Mix(Vec3{0.85f, 0.62f, 0.42f}, Vec3{0.30f, 0.44f, 0.62f}, v);
    const Vec3 land = Mix(Vec3{0.16f, 0.26f, 0.20f}, Vec3{0.42f, 0.40f, 0.18f}, ValueNoise(u * 12, v * 30, 32));
    colour = (v < fHill ? land : sky) * (0.85f + 0.3f * ValueNoise(u * 150, v * 60, 33));
    return true;
}

Vec3 SideWall(Vec3 p)
{
    Vec3 colour{};
    return Painting(p, colour) ? colour : Wall(p.z, p.y);
}

Vec3 BackWall(Vec3 p)
{
    if (kWindow.Contains(p.x, p.y)) return {0.82f, 0.82f, 0.79f};  // the bars; glass is seen through
    return Wall(p.x, p.y);
}

Vec3 BookColour(int nBook, int nShelf)
{
    constexpr Vec3 vColours[] = {{0.50f, 0.12f, 0.10f}, {0.12f, 0.22f, 0.42f}, {0.14f, 0.34f, 0.20f},
                                 {0.62f, 0.48f, 0.18f}, {0.72f, 0.68f, 0.58f}, {0.20f, 0.17f, 0.16f},
                                 {0.42f, 0.20f, 0.38f}, {0.66f, 0.34f, 0.14f}};
    return vColours[HashBits(static_cast<uint32_t>(nBook), static_cast<uint32_t>(nShelf), 81) % 8];
}

Vec3 Books(float x, float fHeight, int nShelf)
{
    constexpr float fPitch = 0.052f;
    int nBook = FloorInt(x / fPitch);
    if (x < (static_cast<float>(nBook) + 0.4f * Hash01(nBook, nShelf, 82)) * fPitch) --nBook;
    const float fStart = (static_cast<float>(nBook) + 0.4f * Hash01(nBook, nShelf, 82)) * fPitch;
    const float fTop = 0.24f + 0.10f * Hash01(nBook, nShelf, 83);
    if (fHeight > fTop || Hash01(nBook, nShelf, 84) < 0.08f) return {0.05f, 0.035f, 0.025f};  // the shelf's back
    const float fRound = Wave((x - fStart) / 0.055f);
    const bool bLabel = Within(fHeight / fTop, 0.62f, 0.76f) || Within(fHeight / fTop, 0.12f, 0.15f);
    const Vec3 colour = bLabel ? Vec3{0.80f, 0.70f, 0.42f} : BookColour(nBook, nShelf);
    return colour * (0.45f + 0.6f * fRound);
}

Vec3 Shelf(const Hit& hit)
{
    const Vec3 wood = Grain({0.36f, 0.22f, 0.12f}, hit.position.y, hit.position.x + hit.position.z, 85);
    if (hit.normal.z > -0.5f || !Within(hit.position.x, 1.29f, 2.46f)) return wood;
    const float fShelf = (hit.position.y - 0.02f) / 0.415f;
    const float fHeight = Fraction(fShelf) * 0.415f - 0.03f;
    return fHeight < 0 || hit.position.y > 2.07f ? wood : Books(hit.position.x, fHeight, FloorInt(fShelf));
}

// 0 .. 1: inside an ellipse on the face, in units of its half sides.
float Spot(Vec3 p, float x, float y, float fWidth, float fHeight)
{
    const float dX = (p.x - x) / fWidth, dY = (p.y - y) / fHeight;
    return 1 - SmoothStep(0.8f, 1.15f, std::sqrt(dX * dX + dY * dY));
}

Vec3 Eye(Vec3 skin, Vec3 p, float fSide)
{
    Vec3 colour = Mix(skin, {0.16f, 0.09f, 0.06f}, 0.9f * Spot(p, 0.40f * fSide, 0.33f, 0.24f, 0.042f));  // brow
    colour = Mix(colour, {0.62f, 0.62f, 0.60f}, Spot(p, 0.39f * fSide, 0.13f, 0.17f, 0.068f));
    colour = Mix(colour, {0.16f, 0.22f, 0.20f}, Spot(p, 0.39f * fSide, 0.13f, 0.07f, 0.065f));
    return Mix(colour, {0.02f, 0.02f, 0.02f}, Spot(p, 0.39f * fSide, 0.13f, 0.032f, 0.032f));
}

Vec3 Face(Vec3 p)
{
    Vec3 colour = Vec3{0.62f, 0.40f, 0.29f} * (0.95f + 0.1f * ValueNoise(p.x * 40, p.y * 40, 91));
    for (const float fSide : {-1.0f, 1.0f}) {
        colour = Mix(colour, {0.66f, 0.31f, 0.24f}, 0.45f * Spot(p, 0.48f * fSide, -0.22f, 0.26f, 0.2f));  // cheek
        colour = Eye(colour, p, fSide);
        colour = Mix(colour, {0.36f, 0.19f, 0.13f}, 0.6f * Spot(p, 0.075f * fSide, -0.235f, 0.05f, 0.03f));
    }
    colour = Mix(colour, {0.76f, 0.53f, 0.41f}, 0.5f * Spot(p, 0.02f, -0.02f, 0.055f, 0.24f));  // ridge of the nose
    const float fSmile = -0.52f + 0.25f * p.x * p.x;
    colour = Mix(colour, {0.55f, 0.20f, 0.18f}, Spot(p, 0, fSmile, 0.27f, 0.062f));
    return Mix(colour, {0.25f, 0.08f, 0.08f}, Spot(p, 0, fSmile, 0.25f, 0.014f));
}

Vec3 Shirt(const Hit& hit)
{
    const float x = hit.position.x - kHead.x, y = hit.position.y;
    if (hit.position.z < kHead.z && (x < 0 ? -x : x) < 0.55f * (y - 1.045f))
        return {0.60f, 0.39f, 0.28f};  // the collar
    const float fKnit = 0.85f + 0.3f * Wave(y * 90) * Wave(x * 160);
    return (Fraction(y / 0.075f) < 0.3f ? Vec3{0.72f, 0.72f, 0.70f} : Vec3{0.10f, 0.20f, 0.34f}) * fKnit;
}

Vec3 LampShade(Vec3 local)
{
    const float fGlow = 1.2f + 1.5f * (1 - local.y) * (1 - local.y);
    return Vec3{1.0f, 0.72f, 0.40f} * (local.z > 0 ? 2.4f : fGlow);  // its inside is the brighter one
}

}  // namespace

Vec3 SurfaceColour(const Hit& hit)
{
    const Vec3 p = hit.position;
    switch (hit.surface) {
        case Surface::kFloor:
            return Floor(p);
        case Surface::kCeiling:
            return {0.76f, 0.75f, 0.72f};
        case Surface::kSideWall:
            return SideWall(p);
        case Surface::kBackWall:
            return BackWall(p);
        case Surface::kCurtain:
            return Vec3{0.66f, 0.56f, 0.42f} * (0.9f + 0.2f * ValueNoise(p.x * 260, p.y * 260, 12));
        case Surface::kShelf:
            return Shelf(hit);
        case Surface::kWood:
            return Grain({0.52f, 0.34f, 0.19f}, p.x, p.z, 24);
        case Surface::kLampShade:
            return LampShade(hit.local);
        case Surface::kBrass:
            return {0.55f, 0.42f, 0.18f};
        case Surface::kOrange:
            return Vec3{0.85f, 0.36f, 0.05f} * (0.85f + 0.3f * ValueNoise(hit.local.x * 22, hit.local.y * 22, 13));
        case Surface::kFace:
            return Face(hit.local);
        case Surface::kHair:
            return Vec3{0.13f, 0.075f, 0.045f} * (0.7f + 0.9f * ValueNoise(hit.local.x * 34, hit.local.y * 4, 15));
        case Surface::kSkin:
            return {0.60f, 0.38f, 0.27f};
        case Surface::kShirt:
            return Shirt(hit);
    }
    return {};
}

}  // namespace vkr::scene
