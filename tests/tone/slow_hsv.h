#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace vkr {

// Hue, saturation and value written with plain quotients, for any non-negative components: hue and saturation in 0 ..
// 255.
inline std::array<int, 3> SlowBgrToHsv(int b, int g, int r)
{
    const int v = std::max(b, std::max(g, r)), d = v - std::min(b, std::min(g, r));
    const int s = v == 0 ? 0 : 255 * d / v;
    if (s == 0) return {0, 0, v};
    if (r == v) return {(43 * (g - b) / d) & 255, s, v};
    if (g == v) return {(85 + 43 * (b - r) / d) & 255, s, v};
    return {(171 + 43 * (r - g) / d) & 255, s, v};
}

inline std::array<uint8_t, 3> SlowHsvToBgr(int h, int s, int v)
{
    if (s == 0) return {static_cast<uint8_t>(v), static_cast<uint8_t>(v), static_cast<uint8_t>(v)};
    const int nRest = h % 43 * 6;
    const int p = (255 - s) * v / 256;
    const int q = (255 - s * nRest / 256) * v / 256;
    const int t = (255 - s * (255 - nRest) / 256) * v / 256;
    const int vTable[6][3] = {{p, t, v}, {p, v, q}, {t, v, p}, {v, q, p}, {v, p, t}, {q, p, v}};  // b, g, r
    const int* pColour = vTable[std::min(h / 43, 5)];
    return {static_cast<uint8_t>(pColour[0]), static_cast<uint8_t>(pColour[1]), static_cast<uint8_t>(pColour[2])};
}

}  // namespace vkr
