#pragma once

#include "face/face_box.h"
#include "face/face_params.h"
#include "foundation/image.h"

namespace vkr {

// The one face of a burst, in pixels of the working pictures, all zero when there is none. nFaceSource below 1 asks the
// network on the upright reference picture (nOrientation 0 .. 3), from 1 up the host's faces (frame pixels) are taken.
FaceBox SearchFace(const CImage& reference, int nOrientation, int nFaceSource, const FaceBox* pHostFaces,
                   int nHostFaces, const FaceParams& params);

}  // namespace vkr
