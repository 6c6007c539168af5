#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vkr::tool {

// The one of vNames that takes the fewest characters put in, left out or changed to become sName, capitals or not; of
// equals the first. A name with a dot in it may also be reached by what stands behind the dot. Empty when none takes as
// few as nMost.
std::string NearestName(const std::string& sName, const std::vector<std::string>& vNames, size_t nMost = SIZE_MAX);

}  // namespace vkr::tool
