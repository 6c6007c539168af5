#pragma once

#include "pictures/picture_io.h"

namespace vkr::tool {

// Maps that the library makes of a burst, as pictures for the eye. References are R, G, B pictures of the working size,
// half the frames; where a map is laid over one, it is shown grey. A map of a coarser level is laid on with hard
// pixels, so that they can be counted; what of a map lies beyond the reference is left out.

struct Colour {
    uint8_t nRed, nGreen, nBlue;
};

// Eight that can be told apart also where they mix; any other number goes round.
Colour ExposureColour(int nExposure);

// No exposure's.
constexpr Colour kGhostColour{255, 0, 160};

// ghost: one channel, 0 .. 128, from the bare reference to the full tint.
Raster GhostOverlay(const Raster& reference, const Raster& ghost);

// shares: a channel per exposure, 128 where a region is all of that exposure. nFirst is the number of the first
// exposure, whose colour it has.
Raster ChoiceOverlay(const Raster& reference, const Raster& shares, int nFirst);

// weights: a channel per exposure, Q7. A pixel is its exposures' colours mixed by their weights; sums below 128 come
// out darker.
Raster WeightColours(const Raster& weights, int nFirst);

// The picture as the page shows it: its longest side 600 .. 1350 pixels, or the picture itself when it has no more.
Raster Thumbnail(const Raster& picture);

}  // namespace vkr::tool
