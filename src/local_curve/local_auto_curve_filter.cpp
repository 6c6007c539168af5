#include "local_curve/local_auto_curve_filter.h"

#include "foundation/bmp.h"
#include "foundation/timing.h"

namespace vkr {

bool CLocalAutoCurveFilter::ProcessImage(CImage& image)
{
    if (image.Empty() || image.nDim != 3) return false;
    SetBlockGeometry(image.nWidth, image.nHeight);
    GetBlockHistograms(image);
    if (!BuildCurves(nCurveStep)) return false;

    // The names hold a backslash, on every platform.
    if (bDumpDebugFile) SaveBmp(image, "LocalContrastDump\\before.bmp", true);
    const bool bApplied = TimedStage("==== ==== ==== ApplyImage", [&] { return ApplyCurves(image); });
    if (bDumpDebugFile) SaveBmp(image, "LocalContrastDump\\after.bmp", true);
    return bApplied;
}

}  // namespace vkr
