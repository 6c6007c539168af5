#include "face/face_search.h"

namespace vkr {

// No face is looked for.
FaceBox SearchFace(const CImage& /*reference*/, int /*nOrientation*/, int /*nFaceSource*/,
                   const FaceBox* /*pHostFaces*/, int /*nHostFaces*/, const FaceParams& /*params*/)
{
    return FaceBox{};
}

}  // namespace vkr
