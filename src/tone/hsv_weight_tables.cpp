#include "tone/hsv_weight_tables.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/log.h"

namespace vkr {

namespace {

// Bounds of a trapezium and the transition around each.
struct Bounds {
    int32_t nLow, nHigh, nTransit;
};

int32_t FadeWeight(int32_t nDistance, int32_t nTransit)
{
    return DivOrZero(nDistance << 7, nTransit);
}

int32_t LinearWeight(int32_t x, const Bounds& b)
{
    const int32_t t = b.nTransit;
    if (x < b.nLow - t || x > b.nHigh + t) return 0;
    if (x > b.nLow + t && x < b.nHigh - t) return 256;
    return FadeWeight(std::min(x - b.nLow + t, b.nHigh + t - x), t);
}

// On the circle of 256: behind 255 the fading toward the lower bound goes on.
int32_t HueWeight(int32_t x, const Bounds& b, int32_t nSaturationTransit)
{
    const int32_t t = b.nTransit;
    if (x <= b.nLow - t || (x >= b.nHigh + t && x <= b.nLow + 256 - t)) return 0;
    if (x <= b.nHigh - t && x >= b.nLow + t) return 256;
    if (t > b.nLow + 256 - x) return FadeWeight(t - b.nLow - 256 + x, t);
    return FadeWeight(std::min(b.nHigh + t - x, x - b.nLow + t), nSaturationTransit);
}

template <class Fn>
void Fill(HsvWeights& weights, const Fn& fn)
{
    for (int32_t x = 0; x < 256; ++x) {
        weights.vWeight[x] = fn(x);
        HdrPrintf("%i ", weights.vWeight[x]);
    }
}

}  // namespace

void BuildGuideWeights(const FaceToneParams& params, HsvWeights& weights)
{
    weights = HsvWeights{};
    if (!params.bHSVTone) return;
    const auto& k = params.nHSP2PToneWeight;
    HdrPrintf("HS Tone LUT: ");
    Fill(weights, [&](int32_t v) { return (k[(v >> 4) + 1] * (v & 15) + k[v >> 4] * (16 - (v & 15))) >> 4; });
}

void BuildSkinWeights(const FaceToneParams& params, SkinWeights& weights)
{
    const Bounds hue = {params.nHSVHLowThres, params.nHSVHHighThres, params.nHSVHTransit};
    const Bounds saturation = {params.nHSVSLowThres, params.nHSVSHighThres, params.nHSVSTransit};
    const Bounds value = {params.nHSVVLowThres, params.nHSVVHighThres, params.nHSVVTransit};
    HdrPrintf("Skin Model Value-Weight LUT: ");
    Fill(weights.hue, [&](int32_t x) { return HueWeight(x, hue, params.nHSVSTransit); });
    Fill(weights.saturation, [&](int32_t x) { return LinearWeight(x, saturation); });
    Fill(weights.value, [&](int32_t x) { return LinearWeight(x, value); });
}

}  // namespace vkr
