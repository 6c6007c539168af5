#pragma once

#include <vector>

#include "align/aligned_pair.h"
#include "burst/photo_burst.h"
#include "library/parameter_choice.h"
#include "library/tool_parameters.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// A burst some of whose pairs could not be aligned gets a second attempt: its frames are brought near each other by
// whole pixels first, and if that is not enough, alignment is content with less. What then still lies beside the rest
// is left out, with all beyond it.

// Whether any pair failed, and nobody but the photo preset has decided how to align and what to do with failures.
bool MayTryAgain(const ParameterChoice& choice, const std::vector<AlignedPair>& vPairs);

// Changes burst and params to what is best, and tells which frames were moved or left out. False when both stay as they
// were.
//
//   vPairs   what alignment made of burst with params, a pair for any two neighbours
//   burst    frames moved; those left out gone, order as it was
//   params   what alignment is to be content with, and the ratios with their frames
//
// Runs alignment several times, with the library's pool and its stage probe: no Engine and no StageListeners may live
// meanwhile. BurstError when there is no memory.
bool TryAgain(const ParameterChoice& choice, const std::vector<AlignedPair>& vPairs, Remarks& remarks,
              PhotoBurst& burst, ToolParameters& params);

}  // namespace vkr::tool
