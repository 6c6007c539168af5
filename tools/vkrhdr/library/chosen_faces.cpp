#include "library/chosen_faces.h"

#include <algorithm>
#include <string>

#include "burst/face_model.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr int kNetworkFaces = 0, kHostFaces = 1;  // face sources of the library

void SetLook(FaceLook look, ToolParameters& params)
{
    if (look == FaceLook::kByParameters) return;
    const std::string sHsv = look == FaceLook::kHsv ? "1" : "0";
    params.Set("bHSVStretch=" + sHsv);
    params.Set("bHSVTone=" + sHsv);
}

void SetSource(FaceSource source, const ParameterChoice& parameters, ToolParameters& params)
{
    if (source == FaceSource::kByPreset) {
        if (parameters.IsPhoto() && !parameters.Sets("bAIMask")) params.Set("bAIMask=1");
        return;
    }
    params.Set(source == FaceSource::kNone ? "bAIMask=0" : "bAIMask=1");
}

std::string TextOf(const FaceBox& box)
{
    return std::to_string(box.x1) + "," + std::to_string(box.y1) + "," + std::to_string(box.x2) + "," +
           std::to_string(box.y2);
}

FaceBox InsidePicture(const FaceBox& box, Size size, Remarks& remarks)
{
    const FaceBox cut = {std::max(box.x1, 0), std::max(box.y1, 0), std::min(box.x2, size.nWidth - 1),
                         std::min(box.y2, size.nHeight - 1)};
    const std::string sSize = std::to_string(size.nWidth) + "x" + std::to_string(size.nHeight);
    if (box.x2 <= box.x1 || box.y2 <= box.y1 || cut.x2 <= cut.x1 || cut.y2 <= cut.y1) {
        throw UsageError("the face " + TextOf(box) +
                         " is refused: X1,Y1,X2,Y2 are its left, top, right and bottom in " + "the picture, which is " +
                         sSize);
    }
    if (TextOf(cut) != TextOf(box)) {
        remarks.Say("the face %s is cut to %s, the picture is %s", TextOf(box).c_str(), TextOf(cut).c_str(),
                    sSize.c_str());
    }
    return cut;
}

}  // namespace

void ChooseFaces(const FaceChoice& choice, const ParameterChoice& parameters, Remarks& remarks, PhotoBurst& burst,
                 ToolParameters& params)
{
    SetLook(choice.look, params);
    SetSource(choice.source, parameters, params);
    burst.nFaceSource = kNetworkFaces;
    if (choice.source == FaceSource::kBoxes) {
        burst.vFaces.clear();
        for (const FaceBox& box : choice.vBoxes) {
            burst.vFaces.push_back(InsidePicture(box, burst.FrameSize(), remarks));
        }
        burst.nFaceSource = kHostFaces;
        return;
    }
    if (params.Get("bAIMask") == 0) return;
    const std::string sWhyNot = FindFaceModel();
    if (sWhyNot.empty()) return;
    remarks.Say("no face is looked for: %s", sWhyNot.c_str());
    params.Set("bAIMask=0");
}

}  // namespace vkr::tool
