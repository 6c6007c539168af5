#include "local_curve/local_auto_curve_filter.h"

#include "foundation/timing.h"

namespace vkr {

bool CLocalAutoCurveFilter::ProcessImage(CImage& image, const StageDumps& allowed)
{
    if (image.Empty() || image.nDim != 3) return false;
    SetBlockGeometry(image.nWidth, image.nHeight);
    GetBlockHistograms(image);
    if (!BuildCurves(nCurveStep)) return false;

    // The names hold a backslash, on every platform.
    const StageDumps dumps = allowed.If(bDumpDebugFile);
    dumps.Save(image, "LocalContrastDump\\before.bmp");
    const bool bApplied = TimedStage("==== ==== ==== ApplyImage", [&] { return ApplyCurves(image, dumps); });
    dumps.Save(image, "LocalContrastDump\\after.bmp");
    return bApplied;
}

}  // namespace vkr
