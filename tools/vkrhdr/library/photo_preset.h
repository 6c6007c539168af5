#pragma once

#include <array>
#include <string>
#include <vector>

#include "pictures/picture_size.h"

namespace vkr::tool {

// Size classes by megapixels, each bound within its class; the last class is all above.
constexpr std::array<double, 2> kPhotoClassBounds = {0.6, 6};
constexpr size_t kPhotoClasses = kPhotoClassBounds.size() + 1;

// One parameter of the photo preset.
struct PhotoValue {
    const char* pName;                       // as ToolParameters::Set takes it
    std::array<int, kPhotoClasses> vValues;  // smallest pictures first
    const char* pWhy;                        // what it does and what it was measured to do; null: as the one before
};

// All of them; docs/parameters.md and the explanations come from here.
const std::vector<PhotoValue>& PhotoValues();

// The parameters tuned for photos, as far as they differ from the library's defaults: "NAME=VALUE", as
// ToolParameters::Set takes them. Some depend on the number of pixels; every size has all of them.
std::vector<std::string> PhotoAssignments(Size size);

// On top of them, for a burst that fails with them alone, once its frames lie near each other.
std::vector<std::string> TolerantAssignments(Size size);

// What params/photo.txt is for: pictures of 12 megapixels.
constexpr Size kPhotoFileSize{4000, 3000};

}  // namespace vkr::tool
