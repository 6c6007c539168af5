#include "commands/face_options.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "burst/face_model.h"
#include "commands/commands.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr int kHostFaces = 1;  // a face source of the library; 0 is the network

FaceBox ParseBox(const std::string& sText)
{
    FaceBox box;
    int nEnd = 0;
    const int nRead = std::sscanf(sText.c_str(), "%d,%d,%d,%d%n", &box.x1, &box.y1, &box.x2, &box.y2, &nEnd);
    if (nRead != 4 || static_cast<size_t>(nEnd) != sText.size() || box.x2 <= box.x1 || box.y2 <= box.y1) {
        throw UsageError("--face takes auto, none, or a box X1,Y1,X2,Y2 in frame pixels, not '" + sText + "'");
    }
    return box;
}

bool IsWord(const std::string& sFace)
{
    return sFace == "auto" || sFace == "none";
}

void ApplyLook(const FaceOptions& options, ToolParameters& params)
{
    if (options.sLook.empty()) return;
    const std::string sHsv = options.sLook == "hsv" ? "1" : "0";
    params.Set("bHSVStretch=" + sHsv);
    params.Set("bHSVTone=" + sHsv);
}

}  // namespace

void DefineFaceOptions(CLI::App& command, FaceOptions& options)
{
    command
        .add_option("--face", options.vFaces,
                    "auto: the network looks for it; none; or a box X1,Y1,X2,Y2 in frame pixels, may be repeated")
        ->type_name("auto|none|BOX")
        ->allow_extra_args(false);
    command.add_option("--face-look", options.sLook, "tone of the face: by its curve, or in hue, saturation, value")
        ->check(CLI::IsMember({"lut", "hsv"}));
}

void CheckFaces(const FaceOptions& options)
{
    for (const std::string& sFace : options.vFaces) {
        if (!IsWord(sFace)) {
            ParseBox(sFace);
        } else if (options.vFaces.size() > 1) {
            throw UsageError("--face " + sFace + " stands alone");
        }
    }
}

void ApplyFaces(const FaceOptions& options, const ParameterOptions& parameters, PhotoBurst& burst,
                ToolParameters& params)
{
    ApplyLook(options, params);
    const bool bWord = !options.vFaces.empty() && IsWord(options.vFaces[0]);
    const bool bOwnChoice = options.vFaces.empty() && parameters.IsPhoto() && !parameters.Sets("bAIMask");
    if (bOwnChoice) params.Set("bAIMask=1");
    if (!options.vFaces.empty()) params.Set(options.vFaces[0] == "none" ? "bAIMask=0" : "bAIMask=1");
    for (const std::string& sFace : options.vFaces) {
        if (!bWord) burst.vFaces.push_back(ParseBox(sFace));
    }
    burst.nFaceSource = burst.vFaces.empty() ? 0 : kHostFaces;
    if (burst.nFaceSource > 0 || params.Get("bAIMask") == 0) return;
    const std::string sWhyNot = FindFaceModel();
    if (sWhyNot.empty()) return;
    Say("no face is looked for: %s", sWhyNot.c_str());
    params.Set("bAIMask=0");
}

}  // namespace vkr::tool
