#pragma once

namespace vkr {

// Logarithm and power of numbers in 0 .. 1, from additions, products and quotients of doubles alone: the bits are the
// same on every machine, which those of the C libraries' logf and powf are not. Off from the true value by less than
// 1e-14 of it before the rounding to float.

// Natural logarithm, 0 < x <= 1.
float NaturalLog(float x);

// x to the power of fExponent, 0 <= x <= 1, fExponent 0.01 .. 2; 0 stays 0.
float Power(float x, float fExponent);

}  // namespace vkr
