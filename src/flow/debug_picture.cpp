#include "flow/debug_picture.h"

#include <algorithm>
#include <cstdio>

#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/timing.h"

namespace vkr {

namespace {

constexpr int kNameBytes = 512;

// The chroma pair of half-size pixel (x, y).
void ClearPair(CYuvImage& picture, int x, int y)
{
    if (x < 0 || x >= picture.nWidth / 2 || y < 0 || y >= picture.nHeight / 2) return;
    uint8_t* pPair = picture.RowUV(y) + 2 * x;
    pPair[0] = pPair[1] = 0;
}

// Wraps: a box may be anywhere.
int Doubled(int n)
{
    return static_cast<int>(2u * static_cast<unsigned>(n));
}

void WriteFile(const CYuvImage& picture, const char* pPath)
{
    std::FILE* pFile = std::fopen(pPath, "wb");
    if (pFile == nullptr) return;
    const size_t nLuma = static_cast<size_t>(picture.nWidth) * static_cast<size_t>(picture.nHeight);
    if (std::fwrite(picture.pY, 1, nLuma, pFile) == nLuma) std::fwrite(picture.pUV, 1, nLuma / 2, pFile);
    std::fclose(pFile);
}

}  // namespace

// However large the box, only what lies in the picture is walked.
void DrawBoxOutline(CYuvImage& picture, const FaceBox& box)
{
    const int nLastRow = std::min(box.y2, picture.nHeight / 2);
    for (int y = std::max(box.y1, 0); y < nLastRow; ++y) {
        ClearPair(picture, box.x1, y);
        ClearPair(picture, box.x2, y);
    }
    const int nLastColumn = std::min(box.x2, picture.nWidth / 2 - 1);
    for (int x = std::max(box.x1, 0); x <= nLastColumn; ++x) {
        ClearPair(picture, x, box.y1);
        ClearPair(picture, x, box.y2);
    }
}

void SaveDebugPicture(const CYuvImage& picture, const FaceBox& box)
{
    CYuvImage marked{};
    ImageScope<CYuvImage> scope(marked);
    if (!marked.CopyFrom(picture)) return;
    DrawBoxOutline(marked, box);
    char szName[kNameBytes];
    HdrSprintf(szName, kNameBytes, "/sdcard/DCIM/debug/hdr_%lld_%dx%d_FaceCoord_%d_%d_%d_%d.yuv",
               static_cast<long long>(NowMs()), marked.nWidth, marked.nHeight, Doubled(box.x1), Doubled(box.y1),
               Doubled(box.x2), Doubled(box.y2));
    WriteFile(marked, szName);
}

}  // namespace vkr
