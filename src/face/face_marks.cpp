#include "face/face_marks.h"

#include <algorithm>

#include "foundation/fixed_point.h"

namespace vkr {

namespace {

void MarkPixel(CImage& image, int64_t nPixel)
{
    uint8_t* pPixel = image.pData + 3 * nPixel;
    pPixel[0] = 0;
    pPixel[1] = 255;
    pPixel[2] = 0;
}

// Pixels x1 .. x2 of row y. A column beyond the row runs on into its neighbours, up to the ends of the picture; a row
// outside is the nearest one.
void MarkRun(CImage& image, int32_t x1, int32_t x2, int32_t y)
{
    const int64_t nRow = int64_t{Clamp(y, 0, image.nHeight - 1)} * image.nWidth;
    const int64_t nPixels = int64_t{image.nWidth} * image.nHeight;
    const int64_t nBegin = std::max<int64_t>(nRow + x1, 0);
    const int64_t nLast = std::min<int64_t>(nRow + x2, nPixels - 1);
    for (int64_t n = nBegin; n <= nLast; ++n) MarkPixel(image, n);
}

void DrawBox(CImage& image, const FaceBox& box)
{
    if (box.x2 == 0 && box.y2 == 0) return;
    if (int64_t{box.y1} + 1 <= int64_t{box.y2} - 1) {  // the sides, without the corners
        const int32_t nFirst = Clamp(box.y1 + 1, 0, image.nHeight - 1);
        const int32_t nLast = Clamp(box.y2 - 1, 0, image.nHeight - 1);
        for (int32_t y = nFirst; y <= nLast; ++y) {
            MarkRun(image, box.x1, box.x1, y);
            MarkRun(image, box.x2, box.x2, y);
        }
    }
    MarkRun(image, box.x1, box.x2, box.y1);
    MarkRun(image, box.x1, box.x2, box.y2);
}

// Frame pixels to pixels of the tone picture.
FaceBox Halved(const FaceBox& box)
{
    return {box.x1 / 2, box.y1 / 2, box.x2 / 2, box.y2 / 2};
}

}  // namespace

void DrawFaceBoxes(CImage& image, const FaceBox& faceBox, const HostFaces& hostFaces, int nFaceSource,
                   const StageDumps& dumps)
{
    if (image.Empty() || image.nDim != 3) return;
    const bool bHostFaces = nFaceSource == 3;
    const bool bEngineFace = nFaceSource == 2 || (nFaceSource == 0 && dumps) || (bHostFaces && hostFaces.nCount == 1);
    if (!bHostFaces && !bEngineFace) return;

    if (bEngineFace) {
        DrawBox(image, faceBox);
    } else {
        for (int i = 0; i < hostFaces.nCount; ++i) DrawBox(image, Halved(hostFaces.pFaces[i]));
    }
    dumps.Save(image, "Dump/WithFaceMask.bmp");
}

}  // namespace vkr
