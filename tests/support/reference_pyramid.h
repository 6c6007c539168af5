#pragma once

#include <cstdint>
#include <vector>

namespace vkr {

// Second, slow writings of the pyramid and smoothing formulas, one output sample at a time from the source samples.
// They share nothing with the library. Pictures are interleaved and tight, as there.
template <class T>
using Pixels = std::vector<T>;

// What becomes of the fraction of a sum: the rounded and the last form floor, as kFloor does; kCarry truncates.
enum class Rest { kFloor, kTruncate, kRound, kCarry, kFloorCarry };

// 5 taps centred on even pixels, edge pixels repeated. (w >> 1) x (h >> 1); an odd last column or row is not read.
Pixels<uint8_t> ReferenceHalve5(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, Rest rest);
Pixels<int16_t> ReferenceHalve5(const Pixels<int16_t>& vSrc, int w, int h, int nDim, Rest rest);

// 6 taps between pixels. The last pair is repeated beyond the picture, or, if bPlainTwo, a side of 2 repeats its
// pixels.
Pixels<uint8_t> ReferenceHalve6(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, bool bPlainTwo, Rest rest);
Pixels<int16_t> ReferenceHalve6(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bPlainTwo, Rest rest);

// 1 6 1 and 1 1, truncated after the row pass. 2w x 2h.
Pixels<uint8_t> ReferenceDouble161(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, bool bCarry);
Pixels<int16_t> ReferenceDouble161(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bCarry);

// 3 : 1. Wrap keeps row results and sums in 16 bits, as the row-parallel signed form does.
Pixels<uint8_t> ReferenceDouble31(const Pixels<uint8_t>& vSrc, int w, int h, int nDim);
Pixels<int16_t> ReferenceDouble31Wrap(const Pixels<int16_t>& vSrc, int w, int h, int nDim);
Pixels<int16_t> ReferenceDouble31Serial(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bCarry);

// 5 x 5 low-pass of the same size.
Pixels<uint8_t> ReferenceSmooth5(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, bool bCarry);
Pixels<int16_t> ReferenceSmooth5(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bCarry);

}  // namespace vkr
