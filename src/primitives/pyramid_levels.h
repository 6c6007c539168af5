#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "parameters/parameter_record.h"

namespace vkr {

// How the stages halve and double: flow parameters.
// clang-format off
struct PyramidParams {
    PARAM(bPyramidFilter,        0,  1, 0, "choice", "halving and doubling: 0 plain, 1 filtered with 5 taps");
    PARAM(bUpScaleImageDither,   0,  1, 0, "flag",
          "doublings of pictures carry what rounding drops to the next sample");
    PARAM(bDownScaleImageDither, 0,  1, 0, "flag", "halvings of pictures carry what rounding drops to the next sample");
    PARAM(bDownScaleOtherDither, 0,  1, 0, "flag", "halvings of weights and ghost maps carry what rounding drops");
    PARAM(bUpScaleOtherDither,   0,  1, 0, "flag", "doublings of weights and ghost maps carry what rounding drops");
    PARAM(nTopLevel,             0, 10, 1, "bits", "pyramids end at a side of at most 1 << nTopLevel pixels");
};
// clang-format on

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
