#pragma once

#include <cstdint>

#include "tone/tone_curve.h"

namespace vkr {

// How base and high frequencies become an 8-bit component. Gains are 8.8 fixed point.
struct StretchGain {
    int32_t nLow;       // black level, taken from the base
    int32_t nScale;     // gain of the base, |nScale| <= 65280; negative where the white level lies below the black one
    int32_t nHighGain;  // gain of the high frequencies, 256 .. 65280
};

// What the 8.8 division left, per component, -255 .. 255: the carry into the next pixel.
struct StretchCarry {
    int32_t vRest[3];
};

// Products of one row of fused pixels, six samples each, six products each in the same order: base * nScale with the
// black level off, high * nHighGain. A product of the base that lies beyond -65536 .. 65536 may come as any other value
// beyond the same end: the clip to 0 .. 65280 that follows takes both to the same. The plain form gives -65537 and
// 65537 there.
void StretchProducts(const int16_t* pFused, int32_t* pProducts, int nWidth, const StretchGain& gain);
void StretchProductsScalar(const int16_t* pFused, int32_t* pProducts, int nWidth, const StretchGain& gain);

// The serial part: per component t = clip(carry + base product, 0 .. 65280), u = t + high product; the output is u /
// 256 clipped to 0 .. 255 and taken through gammaLut, the carry the signed remainder of u, both toward zero. It runs on
// from row to row in carry. Both forms give the same bytes and the same carry: the scalar one is the definition, the
// other, with the three components side by side in one vector, is what to call.
void StretchCarryRowScalar(const int32_t* pProducts, uint8_t* pOut, int nWidth, const GammaLut& gammaLut,
                           StretchCarry& carry);
void StretchCarryRow(const int32_t* pProducts, uint8_t* pOut, int nWidth, const GammaLut& gammaLut,
                     StretchCarry& carry);

}  // namespace vkr
