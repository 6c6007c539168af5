#pragma once

#include "foundation/image.h"
#include "vkrHdr.h"

namespace vkr {

// The host's planes into a slot, which takes their size: rows of nWidth bytes, shared among the team; bytes between the
// host's rows are not read. frame has been checked. False, slot empty, when there is no memory.
bool CopyFrameIn(const vkrHdrFrame& frame, CYuvImage& slot);

// A picture into the host's planes; bytes between the host's rows are not written. False, nothing written, when the
// picture has another size than they have.
bool CopyFrameOut(const CYuvImage& picture, vkrHdrFrame& frame);

}  // namespace vkr
