#pragma once

#include "pictures/whole_file.h"

namespace vkr::tool {

// What a PNG says about itself, apart from its pixels.
struct PngFacts {
    Bytes vProfile;  // ICC; made of its chromaticities where it has those alone
    bool bDeep = false, bTransparent = false;
};

// Of a file that can not be read, what is known up to there.
PngFacts ReadPngFacts(const Bytes& vPng);

// The PNG without what it says about its samples' meaning: gamma, chromaticities, profile.
Bytes WithoutColourChunks(const Bytes& vPng);

// The PNG with that ICC profile in place of what it says.
Bytes WithProfileChunk(const Bytes& vPng, const Bytes& vProfile);

}  // namespace vkr::tool
