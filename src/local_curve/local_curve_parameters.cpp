#include "local_curve/local_auto_curve_filter.h"

namespace vkr {

void CLocalAutoCurveFilter::SetFilterName()
{
    StoreName("CLocalAutoCurveFilter");
}

// clang-format off
void CLocalAutoCurveFilter::RegisterParameters()
{
    //    member           min  max  default  meaning, unit
    PARAM(bDumpDebugFile,    0,   1,   1);    // write pictures and curves under LocalContrastDump
    PARAM(nWinXNum,          1,  16,   8);    // blocks across
    PARAM(nWinYNum,          1,  16,   8);    // blocks down
    PARAM(nLocalWeight,      0,  16,   8);    // 1/16: share of a block's own histogram against the whole picture's
    PARAM(nCurveStep,        0,  16,  16);    // 1/16: how far a burst moves the curves
    PARAM(nSmoothMaskSize,   0,  10,   4);    // rounds of smoothing over the grid
    PARAM(nMinBin,           1,   8,   4);    // 1/16 of an even share: least of a bin
    PARAM(nMaxBin,           8,  32,  16);    // 1/16 of an even share, over one such share: most of a bin
    PARAM(nContrastLevel,    0,  32,  16);    // 1/32: strength, 32 being pure equalisation
    PARAM(nWYUV,             0,  16,  16);    // 1/16: share of the luma-driven mapping against the one by component
    PARAM(nSaturateBoost, -256, 256,   0);    // 1/256: extra colour of the luma-driven mapping
    for (auto& vRow : m_Curve.vCurve) {
        for (auto& vPoints : vRow) {
            for (int i = 0; i < kCurvePoints; ++i) vPoints[i] = (i + 1) * 4;
        }
    }
}
// clang-format on

}  // namespace vkr
