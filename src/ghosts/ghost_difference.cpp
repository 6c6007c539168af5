#include "ghosts/ghost_difference.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "primitives/morphology.h"
#include "primitives/smooth.h"

namespace vkr {

namespace {

using Morphology = CMorphologyFilter;

// Per pixel: the numerator and the denominator of the structure difference, and the brightness difference. Kept apart
// until they are smoothed, which makes their ratio a local normalisation.
constexpr int kTerms = 3;
constexpr int kTermMax = 32767;

// Luma weights; a quotient, because edges have both signs.
int EdgeLuma(const int16_t* pEdges)
{
    return (2 * pEdges[0] + 9 * pEdges[1] + 5 * pEdges[2]) / 16;
}

int Core(int nValue, int nTh)
{
    const int nLeft = std::abs(nValue) - nTh;
    if (nLeft < 0) return 0;
    return nValue < 0 ? -nLeft : nLeft;
}

int LargestSample(const uint8_t* pBgr)
{
    return std::max({pBgr[0], pBgr[1], pBgr[2]});
}

// Counts most around mid-grey, least where both exposures are near black or white.
int BrightnessTerm(int nDark, int nBright, int nDeadZone)
{
    const int nDiff = std::abs(nDark - nBright);
    if (nDiff < nDeadZone) return 0;
    const int nFromMid = std::min(std::abs(nDark - 128), std::abs(nBright - 128));
    return std::min(4 * (((128 - nFromMid) * (nDiff - nDeadZone)) >> 7), kTermMax);
}

struct DiffThresholds {
    int nEdge, nRegular, nDeadZone;
};

void TermRow(const GhostSide& dark, const GhostSide& bright, int y, const DiffThresholds& th, int16_t* pTerms)
{
    const int16_t* pEdgesDark = dark.edges.Row(y);
    const int16_t* pEdgesBright = bright.edges.Row(y);
    const uint8_t* pDark = dark.image.Row(y);
    const uint8_t* pBright = bright.image.Row(y);
    for (int i = 0; i < 3 * dark.image.nWidth; i += 3) {
        const int a = EdgeLuma(pEdgesDark + i), b = EdgeLuma(pEdgesBright + i);
        const int d = Core(a, th.nEdge) - Core(b, th.nEdge);
        int16_t* pOut = pTerms + i;
        pOut[0] = static_cast<int16_t>(std::min((d * d + 1) >> 1, kTermMax));
        pOut[1] = static_cast<int16_t>(std::min(th.nRegular + ((std::abs(a) * std::abs(b)) >> 1), kTermMax));
        pOut[2] =
            static_cast<int16_t>(BrightnessTerm(LargestSample(pDark + i), LargestSample(pBright + i), th.nDeadZone));
    }
}

void DiffRow(const int16_t* pTerms, uint8_t* pDiff, int nWidth, int nOffsetEdge, int nOffsetBrightness)
{
    for (int x = 0; x < nWidth; ++x) {
        const int16_t* pPixel = pTerms + kTerms * x;
        const int nStructure = DivOrZero(pPixel[0] * kWeightOne, pPixel[1]) - nOffsetEdge;
        const int nBrightness = pPixel[2] - nOffsetBrightness;
        pDiff[x] = ClampU8(std::max(nStructure, nBrightness));
    }
}

bool SameSize(const GhostSide& a, const GhostSide& b)
{
    const int w = a.image.nWidth, h = a.image.nHeight;
    const auto Fits = [&](const auto& picture) {
        return !picture.Empty() && picture.nWidth == w && picture.nHeight == h && picture.nDim == 3;
    };
    return Fits(a.image) && Fits(a.edges) && Fits(b.image) && Fits(b.edges);
}

// Small gaps close, then specks go with the outermost pixels. The erosion is bitwise: grey values lose bits in it and
// end at or below what a minimum would leave.
bool CleanDiff(CImage& diff, bool bSquare)
{
    if (!GhostClose(diff, 1)) return false;
    return bSquare ? Morphology::ErodeBinarySquare(diff, diff) : Morphology::ErodeBinaryCross(diff, diff);
}

// Values of the segment nFrom .. nTo - 1, rising from 0 by 64, rounded; the slope is 16.16 and truncated.
int SegmentValue(int v, int nFrom, int nTo)
{
    const int nSlope = 65536 / (nTo - nFrom);
    return (((v - nFrom) * 64 + ((nTo - nFrom) >> 1)) * nSlope) >> 16;
}

void CopyMiddle(const CImage& src, int xSrc, int ySrc, CImage& dst, int xDst, int yDst, int w, int h)
{
    for (int y = 0; y < h; ++y) std::memcpy(dst.Row(yDst + y) + xDst, src.Row(ySrc + y) + xSrc, w);
}

struct Part {
    int x = 0, y = 0, w = 0, h = 0;
};

// The rectangle of all that is not 0, and two pixels of 0 around it as far as the picture has them: closing changes
// nothing outside, and inside it gives what it gives on the whole picture. Ghosts are few: most of a picture stays out.
Part PartWithGhosts(const CImage& ghost)
{
    constexpr int kMargin = 2;
    int xFirst = ghost.nWidth, xLast = -1, yFirst = ghost.nHeight, yLast = -1;
    for (int y = 0; y < ghost.nHeight; ++y) {
        const uint8_t* pRow = ghost.Row(y);
        const uint8_t* pEnd = pRow + ghost.nWidth;
        const uint8_t* pFirst = std::find_if(pRow, pEnd, [](uint8_t v) { return v != 0; });
        if (pFirst == pEnd) continue;
        yFirst = std::min(yFirst, y);
        yLast = y;
        xFirst = std::min(xFirst, static_cast<int>(pFirst - pRow));
        while (pEnd[-1] == 0) --pEnd;
        xLast = std::max(xLast, static_cast<int>(pEnd - pRow) - 1);
    }
    if (xLast < 0) return {};
    const int x = std::max(xFirst - kMargin, 0), y = std::max(yFirst - kMargin, 0);
    return {x, y, std::min(xLast + kMargin, ghost.nWidth - 1) - x + 1,
            std::min(yLast + kMargin, ghost.nHeight - 1) - y + 1};
}

}  // namespace

bool BuildDiffImage(const GhostSide& dark, const GhostSide& bright, const CGhostProcessFilter& params, int nList,
                    CImage& diff)
{
    if (!SameSize(dark, bright)) return false;
    const int w = dark.image.nWidth, h = dark.image.nHeight;
    CShortImage terms{};
    ImageScope scope(terms);
    if (!terms.AllocateDim(w, h, kTerms) || !diff.AllocateGray(w, h)) return false;

    const DiffThresholds th{params.nEdgeTh[nList], params.nDiffEThre[nList], params.nDiffBrThre[nList]};
    for (int y = 0; y < h; ++y) TermRow(dark, bright, y, th, terms.Row(y));
    if (params.bDiffHVFilterEnable && !CSmoothFilter5x5::SmoothImage16(terms, terms, true)) return false;
    for (int y = 0; y < h; ++y) {
        DiffRow(terms.Row(y), diff.Row(y), w, params.nDiffEThre2[nList], params.nDiffBrThre2[nList]);
    }
    if (params.bDiffFinalFilterEnable && !CSmoothFilter5x5::SmoothImage8(diff, diff, true)) return false;
    return !params.bErodeDiffEnable || CleanDiff(diff, params.bErodeSqaureEnable);
}

bool ApplyGhostThre(const CImage& diff, const int32_t vThre[3], CImage& ghost)
{
    if (!ghost.AllocateGray(diff.nWidth, diff.nHeight)) return false;
    uint8_t vTable[256];
    for (int v = 0; v < 256; ++v) {
        int nGhost = 128;
        if (v < vThre[0]) {
            nGhost = 0;
        } else if (v < vThre[1]) {
            nGhost = SegmentValue(v, vThre[0], vThre[1]);
        } else if (v < vThre[2]) {
            nGhost = SegmentValue(v, vThre[1], vThre[2]) + 64;
        }
        vTable[v] = static_cast<uint8_t>(nGhost);
    }
    std::transform(diff.pData, diff.pData + diff.Samples(), ghost.pData, [&](uint8_t v) { return vTable[v]; });
    return true;
}

bool GhostClose(CImage& ghost, int nRounds)
{
    const Part part = PartWithGhosts(ghost);
    if (nRounds < 1 || part.w == 0) return true;
    const int nPad = 2 * nRounds;  // a round grows by two pixels: nothing reaches the border of the larger picture
    CImage wide{};
    ImageScope scope(wide);
    if (!wide.AllocateGray(part.w + 2 * nPad, part.h + 2 * nPad)) return false;
    std::memset(wide.pData, 0, wide.Samples());
    CopyMiddle(ghost, part.x, part.y, wide, nPad, nPad, part.w, part.h);
    for (int i = 0; i < nRounds; ++i) {
        if (!Morphology::DilateGraySquareFast(wide, wide) || !Morphology::DilateGrayCrossFast(wide, wide)) return false;
    }
    for (int i = 0; i < nRounds; ++i) {
        if (!Morphology::ErodeGraySquareFast(wide, wide) || !Morphology::ErodeGrayCrossFast(wide, wide)) return false;
    }
    CopyMiddle(wide, nPad, nPad, ghost, part.x, part.y, part.w, part.h);
    return true;
}

void TakeLarger(const CImage& other, CImage& ghost)
{
    const auto Larger = [](uint8_t a, uint8_t b) { return std::max(a, b); };
    std::transform(other.pData, other.pData + other.Samples(), ghost.pData, ghost.pData, Larger);
}

}  // namespace vkr
