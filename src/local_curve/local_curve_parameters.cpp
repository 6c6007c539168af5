#include "local_curve/local_auto_curve_filter.h"

namespace vkr {

void CLocalAutoCurveFilter::SetFilterName()
{
    StoreName("CLocalAutoCurveFilter");
}

void CLocalAutoCurveFilter::RegisterParameters()
{
    ADD_PARAM(bDumpDebugFile);
    ADD_PARAM(nWinXNum);
    ADD_PARAM(nWinYNum);
    ADD_PARAM(nLocalWeight);
    ADD_PARAM(nCurveStep);
    ADD_PARAM(nSmoothMaskSize);
    ADD_PARAM(nMinBin);
    ADD_PARAM(nMaxBin);
    ADD_PARAM(nContrastLevel);
    ADD_PARAM(nWYUV);
    ADD_PARAM(nSaturateBoost);
    for (auto& vRow : m_Curve.vCurve) {
        for (auto& vPoints : vRow) {
            for (int i = 0; i < kCurvePoints; ++i) vPoints[i] = (i + 1) * 4;
        }
    }
}

}  // namespace vkr
