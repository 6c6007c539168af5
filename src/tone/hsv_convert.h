#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// Hue, saturation, value, a byte each, in the places of B, G, R. With V the largest, m the smallest component and d = V
// - m, quotients toward zero:
//   S = 255 d / V                                  0 where V is 0
//   H = 43 (G - B) / d where V is R, else 85 + 43 (B - R) / d where V is G, else 171 + 43 (R - G) / d, modulo 256
//                                                  0 where S is 0
// and back, with region = H / 43, rem = 6 (H % 43): p, q, t are V weighed by 255 less S, less S rem / 256, less S (255
// - rem) / 256, shifted by 8; S of 0 gives grey at V. The way back is no exact inverse.

// Rows of nPixels pixels, three bytes each; pHsv may be pBgr. The plain forms are the definitions; every instruction
// set gives their bytes. Nothing behind the row is touched.
void BgrToHsvRow(const uint8_t* pBgr, uint8_t* pHsv, int nPixels);
void BgrToHsvRowScalar(const uint8_t* pBgr, uint8_t* pHsv, int nPixels);
void HsvToBgrRow(const uint8_t* pHsv, uint8_t* pBgr, int nPixels);
void HsvToBgrRowScalar(const uint8_t* pHsv, uint8_t* pBgr, int nPixels);

// A colour whose value does not fit a byte.
struct WideHsv {
    uint8_t nHue, nSaturation;
    int32_t nValue;
};

// The same conversion of components 0 .. 32767; the saturation is at most 255 as well.
WideHsv WideToHsv(int32_t b, int32_t g, int32_t r);

// A picture (B, G, R, nDim 3) into hsv, which takes its size and must be another one; with the stage's timer. Rows are
// shared among the team. False, hsv empty, when there was no memory.
bool RGB2HSV(const CImage& rgb, CImage& hsv);

}  // namespace vkr
