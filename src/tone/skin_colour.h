#pragma once

#include <cstdint>

namespace vkr {

// Skin by hue, saturation and value. Hue goes round a circle of 255: skin of every shade lies between red and orange,
// within 15 of it (21 degrees). Less saturated it can not be told from grey, and darker its hue is noise.
constexpr int kSkinHueEnd = 15;
constexpr int kSkinSaturation = 48;
constexpr int kSkinValue = 50;

// As the reference shows it: every pixel that may be skin is measured.
inline bool IsMeasuredSkin(const uint8_t* pHsv)
{
    return pHsv[0] < kSkinHueEnd && pHsv[1] >= kSkinSaturation && pHsv[2] >= kSkinValue;
}

// As the fused picture shows it, stricter by one on every side: hue 0 is also what grey has, and what is corrected as
// skin should be nothing else.
inline bool IsCorrectedSkin(const uint8_t* pHsv)
{
    return pHsv[0] >= 1 && pHsv[0] < kSkinHueEnd - 1 && pHsv[1] > kSkinSaturation && pHsv[2] > kSkinValue;
}

}  // namespace vkr
