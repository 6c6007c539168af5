#include "align/align_dump.h"

#include <cstdio>

#include "foundation/bmp.h"
#include "foundation/colour.h"
#include "foundation/image_scope.h"
#include "foundation/yuv_convert.h"

namespace vkr {

namespace {

constexpr int kNameLength = 128;
constexpr int kCrossArm = 5;  // pixels

struct Bgr {
    uint8_t b, g, r;
};

// Neighbours in the list get colours far apart, the same index the same colour.
Bgr ColourOfIndex(int i)
{
    const uint32_t nMixed = static_cast<uint32_t>(i + 1) * 2654435761u;
    return {static_cast<uint8_t>(64 + (nMixed >> 24) * 3 / 4), static_cast<uint8_t>(64 + (nMixed >> 16 & 255) * 3 / 4),
            static_cast<uint8_t>(64 + (nMixed >> 8 & 255) * 3 / 4)};
}

void PutPixel(CImage& bgr, int x, int y, Bgr colour)
{
    if (x < 0 || y < 0 || x >= bgr.nWidth || y >= bgr.nHeight) return;
    uint8_t* const pPixel = bgr.Row(y) + 3 * static_cast<size_t>(x);
    pPixel[0] = colour.b;
    pPixel[1] = colour.g;
    pPixel[2] = colour.r;
}

void DrawCross(CImage& bgr, const FeaturePoint& point, Bgr colour)
{
    for (int i = -kCrossArm; i <= kCrossArm; ++i) {
        PutPixel(bgr, point.x + i, point.y, colour);
        PutPixel(bgr, point.x, point.y + i, colour);
    }
}

bool GrayToBgr(const CImage& gray, CImage& bgr)
{
    if (gray.Empty() || !bgr.Allocate(gray.nWidth, gray.nHeight)) return false;
    for (size_t i = 0; i < gray.Samples(); ++i) {
        for (int c = 0; c < 3; ++c) bgr.pData[3 * i + c] = gray.pData[i];
    }
    return true;
}

void DumpPoints(const char* pPath, const CImage& gray, const FeaturePoint* pPoints, int nCount, bool bPairs)
{
    CImage bgr{};
    ImageScope scope(bgr);
    if (!GrayToBgr(gray, bgr)) return;
    for (int i = 0; i < nCount; ++i) DrawCross(bgr, pPoints[i], bPairs ? ColourOfIndex(i) : Bgr{0, 255, 255});
    SaveBmp(bgr, pPath, true);
}

void WriteMatches(const char* pPath, const MatchList& matches)
{
    std::FILE* const pFile = std::fopen(pPath, "wt");
    if (pFile == nullptr) return;
    for (int i = 0; i < matches.nCount; ++i) {
        const FeaturePoint& first = matches.pFirst[i];
        const FeaturePoint& second = matches.pSecond[i];
        std::fprintf(pFile, "%d [%e %e] [%e %e]\n", i, static_cast<double>(first.x), static_cast<double>(first.y),
                     static_cast<double>(second.x), static_cast<double>(second.y));
    }
    std::fclose(pFile);
}

}  // namespace

void DumpPyramid(const AlignPyramids& pyramids, int i)
{
    char szPath[kNameLength];
    for (int k = 0; k < pyramids.LevelNum(); ++k) {
        std::snprintf(szPath, sizeof(szPath), "AlignDump\\Im%d_lvl%d.bmp", i, k);
        SaveBmpGray(pyramids.Levels(i)[k], szPath);
    }
}

void DumpMappedPyramid(const AlignPyramids& pyramids, int j)
{
    char szPath[kNameLength];
    for (int k = 0; k < pyramids.LevelNum(); ++k) {
        std::snprintf(szPath, sizeof(szPath), "AlignDump\\Im%d_HE%d_lvl%d.bmp", j, j + 1, k);
        SaveBmpGray(pyramids.Levels(j)[k], szPath);
    }
}

void DumpAligned(const StageDumps& dumps, const CYuvImage& frame, const CImage& mask, int k)
{
    dumps.Save(mask, "AlignDump\\AlginedMask_%d.bmp", k);
    dumps.Save(frame, "AlignDump\\Algined_%d.bmp", k);
}

void DumpFeatures(const char* pPairTag, int nWhich, const CImage& image, const FeaturePoint* pFeatures, int nCount)
{
    char szPath[kNameLength];
    std::snprintf(szPath, sizeof(szPath), "FeatureMatchDump/InitFeature_%s_%d.bmp", pPairTag, nWhich);
    DumpPoints(szPath, image, pFeatures, nCount, false);
}

void DumpMatches(const char* pStage, const char* pPairTag, const CImage& first, const CImage& second,
                 const MatchList& matches)
{
    char szPath[kNameLength];
    std::snprintf(szPath, sizeof(szPath), "FeatureMatchDump/%s_%s_1.bmp", pStage, pPairTag);
    DumpPoints(szPath, first, matches.pFirst, matches.nCount, true);
    std::snprintf(szPath, sizeof(szPath), "FeatureMatchDump/%s_%s_2.bmp", pStage, pPairTag);
    DumpPoints(szPath, second, matches.pSecond, matches.nCount, true);
    std::snprintf(szPath, sizeof(szPath), "FeatureMatchDump/%s_%s.txt", pStage, pPairTag);
    WriteMatches(szPath, matches);
}

}  // namespace vkr
