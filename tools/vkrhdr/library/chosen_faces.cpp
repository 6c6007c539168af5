#include "library/chosen_faces.h"

#include "burst/face_model.h"

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

}  // namespace

void ChooseFaces(const FaceChoice& choice, const ParameterChoice& parameters, Remarks& remarks, PhotoBurst& burst,
                 ToolParameters& params)
{
    SetLook(choice.look, params);
    SetSource(choice.source, parameters, params);
    burst.nFaceSource = kNetworkFaces;
    if (choice.source == FaceSource::kBoxes) {
        burst.vFaces = choice.vBoxes;
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
