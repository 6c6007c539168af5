#pragma once

#include <cstdint>

namespace vkr {

// Value at v of the line through n nodes (pX[i], pY[i]), pX ascending: v is clamped to [pX[0], pX[n - 1]], the first
// segment that holds it gives y0 + ((v - x0) * (y1 - y0)) / (x1 - x0), truncated toward zero. Segments of width 0 are
// skipped. Where no segment holds v (one node, nodes out of order) the result is the last value; 0 for n < 1.
int32_t PiecewiseLinear(const int32_t* pX, const int32_t* pY, int n, int32_t v);

}  // namespace vkr
