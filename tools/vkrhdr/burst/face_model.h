#pragma once

#include <string>

namespace vkr::tool {

// Looks for the model that finds faces, kFaceModelPath: in the working folder, in the one that VKRHDR_SHARE names, and
// in share/vkrhdr of the place that the program is installed in. The library then takes the first that is there, also
// once the working folder is another one. Empty when it is found and loads (another process tries); else why the
// library must not be asked for a search, and what helps.
std::string FindFaceModel();

}  // namespace vkr::tool
