#pragma once

#include "foundation/image.h"

namespace vkr {

// dst receives src at a larger size (even, not below its own): new columns repeat the last luma sample and the last
// chroma pair of their row, new rows repeat the last row. Two frames. False when src is empty, the size is another or
// there was no memory.
bool CopyPadded(const CYuvImage& src, CYuvImage& dst, int nWidth, int nHeight);

// The same in place. On false the frame is as it was.
bool PadFrame(CYuvImage& frame, int nWidth, int nHeight);

// Leaves the top left nWidth x nHeight (even, not above its own) of the frame, in its buffer: no memory is asked for,
// so that what was padded can always be undone. False, the frame as it was, when it is empty or the size is another.
bool CropFrame(CYuvImage& frame, int nWidth, int nHeight);

}  // namespace vkr
