#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// How the stages halve and double: flow parameters, 0 or 1 but for the last.
struct PyramidParams {
    int32_t bPyramidFilter = 0;         // 1 the filtered pair, 0 the fast (plain) pair
    int32_t bUpScaleImageDither = 0;    // carry of doublings of pictures
    int32_t bDownScaleImageDither = 0;  // carry of halvings of pictures
    int32_t bDownScaleOtherDither = 0;  // carry of halvings of weights and ghost images
    int32_t bUpScaleOtherDither = 0;    // carry of doublings of weights and ghost images
    int32_t nTopLevel = 0;              // 0 .. 10: a pyramid ends at a side of at most 1 << nTopLevel pixels
};

// Halves src into dst, sized (w + 1) / 2 x (h + 1) / 2: an odd side is padded to even first. bFilter takes the filtered
// halving, else the plain one; the plain 8-bit halving carries nothing whatever bDither says. False: no memory, or an
// empty source; dst is undefined.
bool HalveImage(const CImage& src, CImage& dst, bool bFilter, bool bDither);

// The same for 16 bits: filtered, or plain with the carry on one thread (bDither), or plain row-parallel. nRangeMax and
// nRangeMin are taken over. What the filtered and the carrying form drop they truncate toward zero, the row-parallel
// form floors.
bool HalveShort(const CShortImage& src, CShortImage& dst, bool bFilter, bool bDither);

// Doubles src into dst, sized 2w x 2h. A source one row high leaves zeros in the plain form. False as above.
bool DoubleImage(const CImage& src, CImage& dst, bool bFilter, bool bDither);

// The same for 16 bits, of three forms as HalveShort; all truncate toward zero.
bool DoubleShort(const CShortImage& src, CShortImage& dst, bool bFilter, bool bDither);

}  // namespace vkr
