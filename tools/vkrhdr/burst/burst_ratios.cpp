#include "burst/burst_ratios.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "burst/exposure_ratio.h"
#include "commands/commands.h"
#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

constexpr double kOne = 16;  // Q4

std::string RatioName(size_t k)
{
    return "nRatio_" + std::to_string(k);
}

void CheckAgainstExif(const RatioFrame& darker, const RatioFrame& brighter, double fRatio)
{
    if (darker.fExposure <= 0 || brighter.fExposure <= 0) return;
    const double fByExif = brighter.fExposure / darker.fExposure;
    if (std::abs(std::log2(fRatio / fByExif)) <= 1) return;
    Say("%s to %s: %.2f times the light as measured, %.2f by EXIF; taken as measured", darker.sName.c_str(),
        brighter.sName.c_str(), fRatio, fByExif);
}

}  // namespace

void SetMeasuredRatios(const std::vector<RatioFrame>& vFrames, const std::vector<std::string>& vKept,
                       ToolParameters& params)
{
    if (vFrames.size() < 2) return;
    Raster darker, brighter = HalfRgbFromFrame(*vFrames[0].pFrame);
    for (size_t k = 0; k + 1 < vFrames.size(); ++k) {
        darker = std::move(brighter);
        brighter = HalfRgbFromFrame(*vFrames[k + 1].pFrame);
        if (std::find(vKept.begin(), vKept.end(), RatioName(k)) != vKept.end()) continue;
        const int nRatio = MeasureExposureRatio(darker, brighter, params.Curve());
        if (nRatio == 0) continue;
        params.SetNearest(RatioName(k), nRatio);
        CheckAgainstExif(vFrames[k], vFrames[k + 1], nRatio / kOne);
    }
}

void SayRatios(const std::vector<RatioFrame>& vFrames, const ToolParameters& params)
{
    for (size_t k = 0; k + 1 < vFrames.size(); ++k) {
        const int nRatio = params.Get(RatioName(k));
        Say("nRatio_%zu=%d: %s to %s, %.2f times the light", k, nRatio, vFrames[k].sName.c_str(),
            vFrames[k + 1].sName.c_str(), nRatio / kOne);
    }
}

}  // namespace vkr::tool
