#include "tone/power.h"

namespace vkr {

namespace {

constexpr double kLog2 = 0.69314718055994530942;

// With x = 2^n * m and s = (m - 1) / (m + 1) it is n * log 2 + 2 * (s + s^3 / 3 + s^5 / 5 + ...). m lies between the
// roots of 1 / 2 and of 2, so that s^2 is below 0.03 and the terms left out below 2^-60.
double Log(double x)
{
    int n = 0;
    for (; x < 0.70710678118654752440; --n) x *= 2.0;
    const double s = (x - 1.0) / (x + 1.0);
    double fSum = 0.0;
    for (int i = 23; i >= 1; i -= 2) fSum = fSum * (s * s) + 1.0 / i;
    return n * kLog2 + 2.0 * s * fSum;
}

// x <= 0. With x = r - n * log 2 it is (1 + r + r^2 / 2! + ...) / 2^n; r lies within log 2 / 2 around 0, and the terms
// left out below 2^-60.
double Exp(double x)
{
    int n = static_cast<int>(0.5 - x / kLog2);
    const double r = x + n * kLog2;
    double fSum = 1.0;
    for (int i = 17; i >= 1; --i) fSum = 1.0 + fSum * r / i;
    for (; n > 0; --n) fSum *= 0.5;
    return fSum;
}

}  // namespace

float NaturalLog(float x)
{
    return static_cast<float>(Log(static_cast<double>(x)));
}

float Power(float x, float fExponent)
{
    if (!(x > 0.0F)) return 0.0F;
    return static_cast<float>(Exp(static_cast<double>(fExponent) * Log(static_cast<double>(x))));
}

}  // namespace vkr
