#pragma once

#include "vkrHdr.h"

namespace vkr {

// Fills the one static record and returns it. pConfigVersion is kept as it is; null: there is no engine.
const vkrHdrVersion* FillVersion(const char* pConfigVersion);

}  // namespace vkr
