#pragma once

#include "foundation/image.h"
#include "foundation/ready_flags.h"

namespace vkr {

// Binarize: each aligned frame (w x h, even sides) becomes a working picture of w/2 x h/2, B, G, R, made of the halved
// luma and the chroma bytes as they stand, and the luma detail that halving lost: frame luma minus the doubled halved
// luma, w x h, nDim 1. Exposures run in parallel, the flag of each is set when its working picture is done. The
// conversion carries its remainder along the raster of one picture. Always the plain halving and doubling, no dither.
// vWorkFrames and vDetailLayers have kMaxExposures records. bUVOrder: 0 first chroma byte Cb, 1 Cr.
// False when there was no memory for one of them; its record stays empty.
bool BinarizeFrames(const CYuvImage* vFrames, int nExposureNum, int bUVOrder, ReadyFlags& flags, CImage* vWorkFrames,
                    CShortImage* vDetailLayers);

}  // namespace vkr
