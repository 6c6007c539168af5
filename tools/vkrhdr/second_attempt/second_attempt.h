#pragma once

#include <vector>

#include "burst/photo_burst.h"
#include "foundation/stage_probe.h"
#include "library/parameter_options.h"
#include "library/tool_parameters.h"

namespace vkr::tool {

// A burst some of whose pairs could not be aligned gets a second attempt: its frames are brought near each other by
// whole pixels first, and if that is not enough, alignment is content with less. What then still lies beside the rest
// is left out, with all beyond it.

// Whether any pair failed, and nobody but the photo preset has decided how to align and what to do with failures.
bool MayTryAgain(const ParameterOptions& options, const std::vector<AlignedPair>& vPairs);

// Changes burst and params to what is best, and says on standard error which frames were moved or left out. False when
// both stay as they were. The stage probe must be free.
bool TryAgain(const ParameterOptions& options, const std::vector<AlignedPair>& vPairs, PhotoBurst& burst,
              ToolParameters& params);

}  // namespace vkr::tool
