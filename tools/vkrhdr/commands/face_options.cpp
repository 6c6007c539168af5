#include "commands/face_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <limits>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// Four whole numbers. What lies beyond 32 bits is taken to the end of them: outside of every picture, which is for
// those to refuse who know its size.
FaceBox ParseBox(const std::string& sText)
{
    FaceBox box;
    const char* p = sText.c_str();
    for (int32_t* pCorner : {&box.x1, &box.y1, &box.x2, &box.y2}) {
        char* pEnd = nullptr;
        const long long nValue = std::strtoll(p, &pEnd, 10);
        if (pEnd == p || *pEnd != (pCorner == &box.y2 ? 0 : ',')) {
            throw UsageError("--face takes auto, none, or a box X1,Y1,X2,Y2 in frame pixels, not '" + sText + "'");
        }
        using Limits = std::numeric_limits<int32_t>;
        *pCorner = static_cast<int32_t>(std::clamp<long long>(nValue, Limits::min(), Limits::max()));
        p = pEnd + 1;
    }
    return box;
}

bool IsWord(const std::string& sFace)
{
    return sFace == "auto" || sFace == "none";
}

FaceLook LookOf(const std::string& sLook)
{
    if (sLook.empty()) return FaceLook::kByParameters;
    return sLook == "hsv" ? FaceLook::kHsv : FaceLook::kCurve;
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

FaceChoice ChosenFaces(const FaceOptions& options)
{
    FaceChoice choice;
    choice.look = LookOf(options.sLook);
    for (const std::string& sFace : options.vFaces) {
        if (!IsWord(sFace)) {
            choice.source = FaceSource::kBoxes;
            choice.vBoxes.push_back(ParseBox(sFace));
        } else if (options.vFaces.size() > 1) {
            throw UsageError("--face " + sFace + " stands alone");
        } else {
            choice.source = sFace == "auto" ? FaceSource::kNetwork : FaceSource::kNone;
        }
    }
    return choice;
}

}  // namespace vkr::tool
