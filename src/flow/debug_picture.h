#pragma once

#include "face/face_box.h"
#include "foundation/image.h"

namespace vkr {

// Sets the chroma of the box's outline to 0, which shows as a green frame. The box is in half-size pixels, ends
// included; what of it lies outside the picture is not drawn. Luma stays.
void DrawBoxOutline(CYuvImage& picture, const FaceBox& box);

// Writes a finished picture with the face box on it, luma then chroma, to the device's folder for debug pictures. The
// name holds the time, the size and the box in frame pixels. Where there is no such folder, or no memory, nothing
// happens.
void SaveDebugPicture(const CYuvImage& picture, const FaceBox& box);

}  // namespace vkr
