#pragma once

#include <string>
#include <vector>

#include "pictures/picture_size.h"

namespace vkr::tool {

// The parameters tuned for photos, as far as they differ from the library's defaults: "NAME=VALUE", as
// ToolParameters::Set takes them. Some depend on the number of pixels; every size has all of them.
std::vector<std::string> PhotoAssignments(Size size);

// On top of them, for a burst that fails with them alone, once its frames lie near each other.
std::vector<std::string> TolerantAssignments(Size size);

// What params/photo.txt is for: pictures of 12 megapixels.
constexpr Size kPhotoFileSize{4000, 3000};

}  // namespace vkr::tool
