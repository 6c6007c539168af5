#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"
#include "ghosts/relinearize.h"

namespace vkr {

// How much contrast an exposure gains, Q7 above 1.0, when it is shown as bright as a brighter one would have shown the
// same light: by the darker exposure, the brighter one and the luma in the darker one. 0 where it gains nothing. About
// 64 KiB: keep it on the heap.
struct EdgeGains {
    int32_t vByLuma[kMaxExposures][kMaxExposures][256];  // [darker][brighter], the others unset
};

// pRatio: Q4 ratios of neighbouring exposures, nExposureNum - 1 of them. The light is read from the 8-bit display
// values of curve along its 10-bit axis, in both directions.
void FillEdgeGains(EdgeGains& gains, const int32_t* pRatio, int nExposureNum, const DisplayCurve& curve);

// Coefficients of one pixel's exposures, Q7, 128 .. nMaxGain: 1.0 but for an exposure that received weight from
// brighter ones. Its share of the detail is then raised by what they would have given.
//
//   pOld, pNew  weights of the exposures before and after, any sums
//   vPixels     the pixel in each exposure: B, G, R
//   pCoefs      nExposureNum values, 1 .. kMaxExposures
void EdgeCoefficients(const EdgeGains& gains, const uint8_t* pOld, const uint8_t* pNew, const uint8_t* const* vPixels,
                      int nExposureNum, int nMaxGain, int16_t* pCoefs);

}  // namespace vkr
