#include "library/parameter_choice.h"

#include <algorithm>

#include "library/photo_preset.h"

namespace vkr::tool {

namespace {

constexpr double kOne = 16;  // Q4, of a ratio

void SetSingleValues(const ParameterChoice& choice, ToolParameters& params)
{
    for (const std::string& sSet : choice.vSets) params.Set(sSet);
}

// But for those that the user sets.
void SetMeasuredRatios(const ParameterChoice& choice, const std::vector<RatioFrame>& vFrames, Remarks& remarks,
                       ToolParameters& params)
{
    std::vector<bool> vWanted;
    for (size_t k = 0; k + 1 < vFrames.size(); ++k) vWanted.push_back(!choice.Sets(RatioName(k)));
    const std::vector<int> vRatios = MeasureRatios(vFrames, vWanted, params.Curve(), remarks);
    for (size_t k = 0; k < vRatios.size(); ++k) {
        if (vRatios[k] != 0) params.SetNearest(RatioName(k), vRatios[k]);
    }
}

void SayRatios(const std::vector<RatioFrame>& vFrames, const ToolParameters& params, Remarks& remarks)
{
    for (size_t k = 0; k + 1 < vFrames.size(); ++k) {
        const int nRatio = params.Get(RatioName(k));
        remarks.SayVerbose("nRatio_%zu=%d: %s to %s, %.2f times the light", k, nRatio, vFrames[k].sName.c_str(),
                           vFrames[k + 1].sName.c_str(), nRatio / kOne);
    }
}

}  // namespace

std::vector<std::string> ParameterChoice::SetNames() const
{
    const std::string sFlow = "CMultiExposureHDRProcessFlow.";
    std::vector<std::string> vNames;
    for (const std::string& sSet : vSets) {
        const std::string sName = sSet.substr(0, sSet.find('='));
        vNames.push_back(sName.rfind(sFlow, 0) == 0 ? sName.substr(sFlow.size()) : sName);
    }
    return vNames;
}

bool ParameterChoice::Sets(const std::string& sName) const
{
    const std::vector<std::string> vNames = SetNames();
    return std::find(vNames.begin(), vNames.end(), sName) != vNames.end();
}

ToolParameters LoadParameters(const ParameterChoice& choice, LibraryLines& lines, Remarks& remarks)
{
    ToolParameters params(ToolParameters::Base::kTool);
    if (!choice.sParams.empty()) {
        std::string sWarning;
        params.Load(choice.sParams, lines, sWarning);
        if (!sWarning.empty()) remarks.Say("%s: %s", choice.sParams.c_str(), sWarning.c_str());
    }
    if (choice.IsPhoto()) params.SetPhotoValues(kPhotoFileSize);
    SetSingleValues(choice, params);
    return params;
}

void FitParameters(const ParameterChoice& choice, const std::vector<RatioFrame>& vFrames, Remarks& remarks,
                   ToolParameters& params)
{
    if (choice.IsPhoto()) {
        params.SetPhotoValues({vFrames[0].pFrame->nWidth, vFrames[0].pFrame->nHeight});
        SetMeasuredRatios(choice, vFrames, remarks, params);
    }
    SetSingleValues(choice, params);
    SayRatios(vFrames, params, remarks);
}

std::string RatioName(size_t k)
{
    return "nRatio_" + std::to_string(k);
}

std::string NameOf(const ParameterChoice& choice)
{
    std::string sName = choice.sParams.empty() ? "preset " + choice.sPreset : choice.sParams;
    for (const std::string& sSet : choice.vSets) sName += ", " + sSet;
    return sName;
}

}  // namespace vkr::tool
