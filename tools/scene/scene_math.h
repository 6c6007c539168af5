#pragma once

#include <cmath>
#include <cstdint>

namespace vkr::scene {

// Arithmetic that gives the same bits on every machine: sums, products, quotients, square roots and floors of floats,
// never a function whose last digit belongs to the C library.

struct Vec3 {
    float x, y, z;
};

inline Vec3 operator+(Vec3 a, Vec3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(Vec3 a, Vec3 b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline Vec3 operator/(Vec3 a, Vec3 b)
{
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}
inline Vec3 operator*(Vec3 a, float f)
{
    return {a.x * f, a.y * f, a.z * f};
}
inline float Dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 Unit(Vec3 a)
{
    return a * (1.0f / std::sqrt(Dot(a, a)));
}

inline float Clamp01(float f)
{
    return f < 0 ? 0 : (f > 1 ? 1 : f);
}
inline float Mix(float a, float b, float t)
{
    return a + (b - a) * t;
}
inline Vec3 Mix(Vec3 a, Vec3 b, float t)
{
    return a + (b - a) * t;
}
constexpr bool Within(float f, float fMin, float fMax)
{
    return f >= fMin && f <= fMax;
}

// 0 below fFrom, 1 above fTo, smooth between.
inline float SmoothStep(float fFrom, float fTo, float f)
{
    const float t = Clamp01((f - fFrom) / (fTo - fFrom));
    return t * t * (3 - 2 * t);
}

// A smooth wave 0 .. 1 .. 0 of period 1.
inline float Wave(float f)
{
    const float t = f - std::floor(f);
    return SmoothStep(0, 1, t < 0.5f ? 2 * t : 2 - 2 * t);
}

inline float Fraction(float f)
{
    return f - std::floor(f);
}
inline int FloorInt(float f)
{
    return static_cast<int>(std::floor(f));
}

inline uint32_t HashBits(uint32_t n)
{
    n ^= n >> 16;
    n *= 0x7feb352dU;
    n ^= n >> 15;
    n *= 0x846ca68bU;
    return n ^ (n >> 16);
}

inline uint32_t HashBits(uint32_t x, uint32_t y, uint32_t nSeed)
{
    return HashBits(x * 0x9e3779b1U + HashBits(y * 0x85ebca77U + HashBits(nSeed)));
}

// 0 .. 1 from a place on a grid.
inline float Hash01(int x, int y, uint32_t nSeed)
{
    return static_cast<float>(HashBits(static_cast<uint32_t>(x), static_cast<uint32_t>(y), nSeed) >> 8) / 16777216.0f;
}

// Smooth noise 0 .. 1, one feature per unit.
inline float ValueNoise(float x, float y, uint32_t nSeed)
{
    const int nX = FloorInt(x), nY = FloorInt(y);
    const float fX = SmoothStep(0, 1, Fraction(x)), fY = SmoothStep(0, 1, Fraction(y));
    return Mix(Mix(Hash01(nX, nY, nSeed), Hash01(nX + 1, nY, nSeed), fX),
               Mix(Hash01(nX, nY + 1, nSeed), Hash01(nX + 1, nY + 1, nSeed), fX), fY);
}

// Three octaves of it.
inline float CloudNoise(float x, float y, uint32_t nSeed)
{
    return 0.55f * ValueNoise(x, y, nSeed) + 0.3f * ValueNoise(2 * x, 2 * y, nSeed + 1) +
           0.15f * ValueNoise(4 * x, 4 * y, nSeed + 2);
}

}  // namespace vkr::scene
