#include "tone/tone_curve.h"

#include <algorithm>
#include <cmath>

#include "foundation/fixed_point.h"
#include "foundation/log.h"

namespace vkr {

namespace {

// Means 1 .. 255. At nIn 255 the quotient is minus infinity, which ends as 1.0.
float ChooseGamma(int32_t nIn, int32_t nOut, int32_t nMaxGamma)
{
    const float fLimit = static_cast<float>(nMaxGamma);
    const float fGamma = std::log(static_cast<float>(nOut) / 255.0F) / std::log(static_cast<float>(nIn) / 255.0F);
    if (fGamma < 1.0F) return 1.0F;
    return fGamma * 100.0F > fLimit ? fLimit / 100.0F : fGamma;
}

int32_t GammaValue(int32_t i, float fGamma)
{
    const float fPower = std::pow(static_cast<float>(i) / 255.0F, 1.0F / fGamma);
    const float v = 0.5F + fPower * 255.0F;
    return std::min(Clamp(static_cast<int32_t>(v), 0, 255), 2 * i);
}

}  // namespace

bool BuildGammaLut(int32_t nInMean, int32_t nOutMean, const ToneParams& params, GammaLut& gammaLut)
{
    const int32_t nIn = Clamp(nInMean, 1, 255);
    const int32_t nOut = Clamp(nOutMean, 1, 255);
    for (int32_t i = 0; i < 256; ++i) gammaLut.vValue[i] = i;
    if (!params.bBrightnessPRSV || nOut >= nIn) return false;

    const float fGamma = ChooseGamma(nIn, nOut, params.nMaxGamma);
    HdrPrintf("gamma=%f\n", static_cast<double>(fGamma));
    for (int32_t i = 0; i < 256; ++i) gammaLut.vValue[i] = GammaValue(i, fGamma);
    return true;
}

}  // namespace vkr
