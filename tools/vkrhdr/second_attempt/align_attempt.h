#pragma once

#include <vector>

#include "align/multiple_images_align_filter.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// What alignment, run by itself, makes of a burst.
struct AlignAttempt {
    std::vector<Frame> vFrames;       // aligned, darkest first
    std::vector<AlignedPair> vPairs;  // of neighbours, darkest first
};

// filter's parameters decide; no debug files. Takes the library's stage probe, so no StageListeners may live meanwhile.
// BurstError when there is no memory.
AlignAttempt AlignFrames(const std::vector<Frame>& vFrames, int nReference, CMultipleImagesAlignFilterOpt& filter);

}  // namespace vkr::tool
