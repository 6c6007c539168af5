#pragma once

#include <string>
#include <vector>

#include "photo_burst.h"
#include "tool_parameters.h"

namespace vkr::tool {

// Whose face the tone follows.
struct FaceOptions {
    std::vector<std::string> vFaces;  // empty: as the parameters say; "none", "auto", or boxes "X1,Y1,X2,Y2"
    std::string sLook;                // empty: as the parameters say; "lut" or "hsv"
};

void DefineFaces(CLI::App& command, FaceOptions& options);

// UsageError for all that can be refused before a picture is read.
void CheckFaces(const FaceOptions& options);

// Sets the faces of burst and the parameters that go with them. A search by the network is asked for only where the
// model lies, kFaceModelPath in the folder that the program runs in; where it is missing, one line on standard error
// tells how to get it, and no face is looked for: without it the library would end the process.
void ApplyFaces(const FaceOptions& options, PhotoBurst& burst, ToolParameters& params);

// For a render in another working folder: the model, copied there, if the burst asks for it.
void TakeFaceModelTo(const std::string& sFolder, const PhotoBurst& burst, const ToolParameters& params);

}  // namespace vkr::tool
