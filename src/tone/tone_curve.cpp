#include "tone/tone_curve.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/log.h"
#include "tone/power.h"

namespace vkr {

namespace {

// Means 1 .. 255. At nIn 255 the quotient is minus infinity.
float GammaBetween(int32_t nIn, int32_t nOut)
{
    return NaturalLog(static_cast<float>(nOut) / 255.0F) / NaturalLog(static_cast<float>(nIn) / 255.0F);
}

float LimitGamma(float fGamma, int32_t nMaxGamma)
{
    const float fLimit = static_cast<float>(nMaxGamma);
    return fGamma * 100.0F > fLimit ? fLimit / 100.0F : fGamma;
}

int32_t GammaValue(int32_t i, float fGamma)
{
    const float fPower = Power(static_cast<float>(i) / 255.0F, 1.0F / fGamma);
    const float v = 0.5F + fPower * 255.0F;
    return std::min(Clamp(static_cast<int32_t>(v), 0, 255), 2 * i);
}

void FillIdentity(GammaLut& gammaLut)
{
    for (int32_t i = 0; i < 256; ++i) gammaLut.vValue[i] = i;
}

void FillPower(float fGamma, GammaLut& gammaLut)
{
    for (int32_t i = 0; i < 256; ++i) gammaLut.vValue[i] = GammaValue(i, fGamma);
}

}  // namespace

bool BuildGammaLut(int32_t nInMean, int32_t nOutMean, const ToneParams& params, GammaLut& gammaLut)
{
    const int32_t nIn = Clamp(nInMean, 1, 255);
    const int32_t nOut = Clamp(nOutMean, 1, 255);
    FillIdentity(gammaLut);
    if (!params.bBrightnessPRSV || nOut >= nIn) return false;

    const float fWanted = GammaBetween(nIn, nOut);
    const float fGamma = fWanted < 1.0F ? 1.0F : LimitGamma(fWanted, params.nMaxGamma);
    HdrPrintf("gamma=%f\n", static_cast<double>(fGamma));
    FillPower(fGamma, gammaLut);
    return true;
}

bool BuildBoostLut(int32_t nInMean, int32_t nOutMean, const ToneParams& params, GammaLut& gammaLut)
{
    FillIdentity(gammaLut);
    if (!params.bBrightnessPRSV || nOutMean >= nInMean || nOutMean >= params.nOutGammaYThres) return false;

    const float fWanted = GammaBetween(nInMean, nOutMean);
    if (!(fWanted >= 1.0F)) return false;
    const float fGamma = LimitGamma(fWanted, params.nMaxGamma);
    HdrPrintf("Boost Gamma=%f\n", static_cast<double>(fGamma));
    FillPower(fGamma, gammaLut);
    return true;
}

}  // namespace vkr
