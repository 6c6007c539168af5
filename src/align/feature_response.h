#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "foundation/row_view.h"

namespace vkr {

// Rows of a 7-row window: pRows[3 + dy][x + 3 + dx] is the sample at offset (dx, dy) from pixel x, dx, dy in -3 .. 3.
using WindowRows = const uint8_t* const*;

struct ResponseParams {
    int nPtThre1, nPtThre2;  // hits in each group of the ring, in the whole ring
    int nThre, nRatio;       // margin in grey values; its growth in dark pixels, 1/128
    int nHarrisThre;
    float fHarrisK;
};

// Columns nX .. nX + nWidth - 1, rows nY .. nY + nHeight - 1 of a picture.
struct FeatureRect {
    int nX, nY, nWidth, nHeight;
};

// Whether enough of the 16 pixels at radius 3 are darker, or brighter, than pixel x by more than the margin.
bool PassesRing(WindowRows pRows, int x, const ResponseParams& params);

// Harris response of pixel x over its 5 x 5 block: A * B - C^2 - k * (A + B)^2 of the binomially weighted means of the
// squared differences. Every operation is rounded to float, so that the bits do not depend on the machine.
float HarrisResponse(WindowRows pRows, int x, float fHarrisK);

// Responses of the pixels of rect, which lies inside level (nDim 1) and is not empty: 0 where the ring test fails or
// the response is below nHarrisThre. map has rect.nHeight rows of rect.nWidth values. Samples outside the picture, not
// the rectangle, are clamped. Same values from any number of threads. False when there is no memory for scratch.
bool BuildResponseMap(const CImage& level, const FeatureRect& rect, const ResponseParams& params,
                      const RowView<float>& map);

}  // namespace vkr
