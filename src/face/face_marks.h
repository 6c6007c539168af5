#pragma once

#include "face/face_box.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"

namespace vkr {

// Draws pure green boxes, one pixel wide, on the tone picture (B, G, R): nFaceSource 2 the engine's box; 3 the engine's
// box when there is exactly one host face, every host face (frame pixels, halved toward zero) when there are more; 0
// the engine's box when the dumps are on; anything else nothing. A box whose x2 and y2 are both 0 is not drawn. Rows
// are clamped to the picture; columns beyond the right edge run on in memory within the picture and stop at its end.
// The marked picture is dumped as Dump/WithFaceMask.bmp.
void DrawFaceBoxes(CImage& image, const FaceBox& faceBox, const HostFaces& hostFaces, int nFaceSource,
                   const StageDumps& dumps);

}  // namespace vkr
