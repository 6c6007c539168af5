#pragma once

#include <string>
#include <vector>

#include "burst/read_burst.h"

namespace CLI {
class App;
}

namespace vkr::tool {

// Which pictures make the burst, as the command line says it.
struct BurstOptions {
    std::vector<std::string> vImages;
    std::string sRaw, sSize;  // both empty, or nv12 or nv21 and WxH
    int nReference = -1;      // in the order of brightness; below 0: the middle one
};

void DefineBurst(CLI::App& command, BurstOptions& options);

// UsageError for all that can be refused before a picture is read. From then on no output replaces one of the pictures.
BurstChoice ChosenBurst(const BurstOptions& options);

}  // namespace vkr::tool
