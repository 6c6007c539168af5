#pragma once

#include <array>
#include <cstdint>

#include "tone/hsv_convert.h"

namespace vkr {

// Single pixels through the plain forms: hue, saturation and value of any components, and back.
inline std::array<int, 3> SlowBgrToHsv(int b, int g, int r)
{
    const WideHsv hsv = WideToHsv(b, g, r);
    return {hsv.nHue, hsv.nSaturation, hsv.nValue};
}

inline std::array<uint8_t, 3> SlowHsvToBgr(int h, int s, int v)
{
    std::array<uint8_t, 3> pixel = {static_cast<uint8_t>(h), static_cast<uint8_t>(s), static_cast<uint8_t>(v)};
    HsvToBgrRowScalar(pixel.data(), pixel.data(), 1);
    return pixel;
}

}  // namespace vkr
