#include "foundation/piecewise_linear.h"

#include "foundation/fixed_point.h"

namespace vkr {

namespace {

// y0 + (dx * (y1 - y0)) / width, truncated toward zero. Worked out on magnitudes, whose product of two 32-bit distances
// always fits unsigned 64 bits; 0 <= dx <= width keeps the result between y0 and y1.
int32_t Interpolate(int64_t nDx, int64_t nWidth, int64_t y0, int64_t y1)
{
    const uint64_t nRise = static_cast<uint64_t>(y1 >= y0 ? y1 - y0 : y0 - y1);
    const int64_t nPart = static_cast<int64_t>(static_cast<uint64_t>(nDx) * nRise / static_cast<uint64_t>(nWidth));
    return static_cast<int32_t>(y1 >= y0 ? y0 + nPart : y0 - nPart);
}

}  // namespace

int32_t PiecewiseLinear(const int32_t* pX, const int32_t* pY, int n, int32_t v)
{
    if (n < 1) return 0;
    const int32_t x = Clamp(v, pX[0], pX[n - 1]);
    for (int i = 0; i + 1 < n; ++i) {
        if (x < pX[i] || x > pX[i + 1] || pX[i] == pX[i + 1]) continue;
        return Interpolate(int64_t{x} - pX[i], int64_t{pX[i + 1]} - pX[i], pY[i], pY[i + 1]);
    }
    return pY[n - 1];
}

}  // namespace vkr
