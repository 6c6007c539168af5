#pragma once

#include <cstdint>

namespace vkr {

constexpr int kWeightOne = 128;   // Q7: weights and coefficients, 128 = 1.0
constexpr int kMaxExposures = 8;  // frames of a burst
constexpr int kMaxLevels = 16;    // levels of a pyramid

// Clamps to lo .. hi.
inline int32_t Clamp(int32_t v, int32_t lo, int32_t hi)
{
    return v < lo ? lo : (v > hi ? hi : v);
}

// Clamps to 0 .. 255.
inline uint8_t ClampU8(int32_t v)
{
    return static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
}

// Quotient that truncates toward zero; 0 where the divisor is 0 (an empty block, weights that sum to 0).
inline int32_t DivOrZero(int32_t a, int32_t b)
{
    return b == 0 ? 0 : static_cast<int32_t>(int64_t{a} / b);
}
inline int64_t DivOrZero64(int64_t a, int64_t b)
{
    return b == 0 ? 0 : a / b;
}

// Luma of 8-bit B, G, R samples, weights 2 : 9 : 5 in 1/16, rounded.
inline int32_t LumaOfBgr(int32_t b, int32_t g, int32_t r)
{
    return (9 * g + 2 * b + 5 * r + 8) >> 4;
}

}  // namespace vkr
