#pragma once

#include <string>

#include "pictures/picture_io.h"

namespace vkr::tool {

// ICC profiles as files hold them. An empty one stands for sRGB.

// Whether the same samples mean the same colours in both, within one of 255. False when one of them can not be used:
// it is none, or not for R, G, B.
bool MeanTheSame(const Bytes& vProfile, const Bytes& vOther);

// Brings a frame's colours from one profile into another, relative to their whites, black to black. False, and the
// frame as it was, when one of the profiles can not be used.
bool ConvertColours(const Bytes& vFrom, const Bytes& vTo, Frame& frame);

// What the profile calls itself; "sRGB" for none.
std::string ProfileName(const Bytes& vProfile);

// A profile with the tone curve of sRGB and these chromaticities: x and y of white, red, green, blue. Empty when they
// are those of sRGB, or no colours at all.
Bytes ProfileOfPrimaries(const double (&vPlaces)[8]);

}  // namespace vkr::tool
