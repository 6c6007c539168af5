#pragma once

#include "face/face_intensity.h"
#include "foundation/image.h"
#include "tone/fused_face.h"

namespace vkr {

// Tone of a burst with a usable face, and the reference's colour with it, in one pass: the fused picture (nDim 6,
// signed 16 bits) becomes an 8-bit B, G, R picture of its size. A curve of the value puts the levels of the face where
// they lie in the reference exposure (B, G, R, of the size of fused); hue and saturation follow the reference pixel by
// pixel (bHSP2PTone) or by averages over skin and picture.
//
//   face    low and high levels of both pictures; the low ones are used
//   levels  updated toward this picture's levels when one of the keep-detail flags is set
//
// Rows are shared among the team, same bytes from any number of threads. False when there was no memory or a picture of
// another size; out is empty then.
bool HSVStretchTone(const FusedFace& burst, const FaceStretch& stretch, const MeasuredFace& face, StretchLevels& levels,
                    CImage& out);

}  // namespace vkr
