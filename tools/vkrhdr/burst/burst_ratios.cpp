#include "burst/burst_ratios.h"

#include <cmath>
#include <utility>

#include "burst/exposure_ratio.h"
#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

constexpr double kOne = 16;  // Q4

void CheckAgainstExif(const RatioFrame& darker, const RatioFrame& brighter, double fRatio, Remarks& remarks)
{
    if (darker.fExposure <= 0 || brighter.fExposure <= 0) return;
    const double fByExif = brighter.fExposure / darker.fExposure;
    if (std::abs(std::log2(fRatio / fByExif)) <= 1) return;
    remarks.Say("%s to %s: %.2f times the light as measured, %.2f by EXIF; taken as measured", darker.sName.c_str(),
                brighter.sName.c_str(), fRatio, fByExif);
}

}  // namespace

std::vector<int> MeasureRatios(const std::vector<RatioFrame>& vFrames, const std::vector<bool>& vWanted,
                               const DisplayCurve& curve, Remarks& remarks)
{
    if (vFrames.size() < 2) return {};
    std::vector<int> vRatios(vFrames.size() - 1);
    Raster darker, brighter = HalfRgbFromFrame(*vFrames[0].pFrame);
    for (size_t k = 0; k < vRatios.size(); ++k) {
        darker = std::move(brighter);
        brighter = HalfRgbFromFrame(*vFrames[k + 1].pFrame);
        if (!vWanted[k]) continue;
        vRatios[k] = MeasureExposureRatio(darker, brighter, curve);
        if (vRatios[k] != 0) CheckAgainstExif(vFrames[k], vFrames[k + 1], vRatios[k] / kOne, remarks);
    }
    return vRatios;
}

}  // namespace vkr::tool
