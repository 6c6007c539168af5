#pragma once

#include <string>
#include <vector>

namespace vkr::tool {

// The one of vNames that takes the fewest characters put in, left out or changed to become sName, capitals or not; of
// equals the first. Empty when there are no names.
std::string NearestName(const std::string& sName, const std::vector<std::string>& vNames);

}  // namespace vkr::tool
