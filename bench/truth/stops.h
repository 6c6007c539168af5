#pragma once

namespace vkr::truth {

// 2 to the power of f, |f| < 8: the sixteenth root by its series, then four squarings. A function of the C library need
// not give the same last digit everywhere.
inline float TwoToThe(float f)
{
    const float u = f * (0.69314718f / 16);
    float fRoot = 1 + u * (1 + u * (0.5f + u * (1.0f / 6 + u * (1.0f / 24))));
    fRoot *= fRoot;
    fRoot *= fRoot;
    fRoot *= fRoot;
    return fRoot * fRoot;
}

}  // namespace vkr::truth
