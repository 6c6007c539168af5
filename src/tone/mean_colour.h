#pragma once

#include "foundation/image.h"

namespace vkr {

// A colour for the eye of a reader of the lines: hue 0 .. 360 degrees, saturation and value 0 .. 1 (grey value / 255).
struct MeanHsv {
    double fHue, fSaturation, fValue;
};

// Hue, saturation and value of the mean of a picture's first three components, B, G, R; zero for an empty picture.
MeanHsv MeanColour(const CImage& image);
MeanHsv MeanColour(const CShortImage& image);

}  // namespace vkr
