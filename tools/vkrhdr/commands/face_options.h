#pragma once

#include <string>
#include <vector>

#include "burst/face_choice.h"

namespace CLI {
class App;
}

namespace vkr::tool {

// Whose face the tone follows, as the command line says it.
struct FaceOptions {
    std::vector<std::string> vFaces;  // "none", "auto", or boxes "X1,Y1,X2,Y2"; empty: by the preset
    std::string sLook;                // empty: as the parameters say; "lut" or "hsv"
};

void DefineFaceOptions(CLI::App& command, FaceOptions& options);

// UsageError for all that can be refused before a picture is read.
FaceChoice ChosenFaces(const FaceOptions& options);

}  // namespace vkr::tool
