#pragma once

#include <string>
#include <vector>

#include "burst/photo_burst.h"
#include "library/parameter_options.h"
#include "library/tool_parameters.h"

namespace vkr::tool {

// Whose face the tone follows.
struct FaceOptions {
    // "none", "auto", or boxes "X1,Y1,X2,Y2"; empty: auto with the photo preset, else as the parameters say
    std::vector<std::string> vFaces;
    std::string sLook;  // empty: as the parameters say; "lut" or "hsv"
};

void DefineFaceOptions(CLI::App& command, FaceOptions& options);

// UsageError for all that can be refused before a picture is read.
void CheckFaces(const FaceOptions& options);

// Sets the faces of burst and the parameters that go with them. A search by the network is asked for only where there
// is a model (see FindFaceModel); where it is missing, one line on standard error tells how to get it, and no face is
// looked for: without it the library would end the process.
void ApplyFaces(const FaceOptions& options, const ParameterOptions& parameters, PhotoBurst& burst,
                ToolParameters& params);

}  // namespace vkr::tool
