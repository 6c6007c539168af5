#pragma once

#include <cstdint>

#include "primitives/planar_rows.h"
#include "weights/weight_params.h"

namespace vkr {

// How good a brightness is in one exposure, Q7. Weights lie in m_nMinFusionWeight .. m_nMaxFusionWeight, 1 .. 128, so
// they are never 0 before they are normalised. Stateless; reads only its arguments.

// Weight of a squared brightness difference, from the lists of the reference exposure when bRef is set.
int32_t BrightnessDiffToWeight(int32_t nDiff, bool bRef, const WeightParams& params);

// Weight of every exposure for its brightness, 0 .. 255. The darkest exposure may be too bright and the brightest too
// dark at no cost. With a face, the reference exposure aims at the face's brightness inside the window
// nFaceIntensityRefRange, fading to its own target at the window's ends. nExposureNum 1 .. 8.
void BrightnessWeightOfPixel(const int32_t* pBrightness, int32_t* pWeight, int nExposureNum, int nReference,
                             const WeightParams& params, const FaceAim& face);

// The same for every brightness that all exposures share, one row per exposure.
struct BrightnessTable {
    uint8_t vRows[kMaxExposures][256];
};
void FillBrightnessTable(BrightnessTable& table, int nExposureNum, int nReference, const WeightParams& params,
                         const FaceAim& face);

// Values of nFusionWeightSelect.
constexpr int32_t kLumaOfPixel = 0;
constexpr int32_t kLargestSample = 1;
constexpr int32_t kSmallestSample = 2;

// Brightness of nCount pixels B, G, R, at most kRunPixels, as nFusionWeightSelect says; values that it does not have
// mean the smallest sample.
void BrightnessRun(int32_t nFusionWeightSelect, const uint8_t* pBgr, uint8_t* pBrightness, int nCount);

}  // namespace vkr
