#pragma once

#include "face/face_intensity.h"
#include "face/face_params.h"
#include "foundation/image.h"
#include "tone/fused_face.h"

namespace vkr {

// Scales the medians of a face (vLow of the record) into the accepted brightness, all three by one ratio so that the
// colour stays: by the first component, blue, green, red, that lies above its nFaceHighThres, else by the first below
// its nFaceLowThres. The others may still lie outside. A component of 0 takes the others to 0.
void BringFaceIntoRange(const FaceParams& params, FaceIntensity& face);

// Tone of a burst with a usable face: the fused picture (nDim 6, signed 16 bits) becomes an 8-bit B, G, R picture of
// its size, by one curve that puts the face where it lies in the reference exposure, with the gamma of GlobalStretch
// folded in.
//
//   burst   its reference is for lines of the dumps only
//   face    medians of both pictures; those of the reference are brought into range in place
//   levels  updated toward this picture's levels when one of the keep-detail flags is set
//
// Rows are shared among the team, same bytes from any number of threads. False when there was no memory or a mask of
// another size; out is empty then.
bool FaceToneStretch(const FusedFace& burst, const FaceStretch& stretch, MeasuredFace& face, StretchLevels& levels,
                     CImage& out);

}  // namespace vkr
