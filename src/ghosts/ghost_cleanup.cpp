#include "ghosts/ghost_cleanup.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "ghosts/ghost_difference.h"
#include "primitives/morphology.h"
#include "primitives/smooth.h"

namespace vkr {

namespace {

using Morphology = CMorphologyFilter;

// A scan passes over a picture from the top left (nStep 1) or from the bottom right (nStep -1), and what it changes is
// seen by the pixels after it. pBefore is the row before this one, null on the first.
struct ScanRow {
    uint8_t* pHere;
    const uint8_t* pBefore;
    int y, w, nStep;
};

// Whether one of the neighbours that the scan has passed lies above nTh: the pixel before x and three of the row
// before.
bool AnyPassedAbove(const ScanRow& row, int x, int nTh)
{
    const int xBefore = x - row.nStep;
    if (xBefore >= 0 && xBefore < row.w && row.pHere[xBefore] > nTh) return true;
    if (row.pBefore == nullptr) return false;
    return row.pBefore[x] > nTh || (x > 0 && row.pBefore[x - 1] > nTh) || (x + 1 < row.w && row.pBefore[x + 1] > nTh);
}

// scanRow(const ScanRow&) tells whether it changed a pixel, and so does the scan.
template <class Fn>
bool ScanRows(CImage& image, int nStep, const Fn& scanRow)
{
    bool bChanged = false;
    uint8_t* pBefore = nullptr;
    for (int i = 0; i < image.nHeight; ++i) {
        const int y = nStep > 0 ? i : image.nHeight - 1 - i;
        uint8_t* pHere = image.Row(y);
        bChanged |= scanRow(ScanRow{pHere, pBefore, y, image.nWidth, nStep});
        pBefore = pHere;
    }
    return bChanged;
}

// visit(x) in the direction of the scan, telling whether it changed the pixel.
template <class Visit>
bool ScanPixels(const ScanRow& row, const Visit& visit)
{
    bool bChanged = false;
    for (int i = 0, x = row.nStep > 0 ? 0 : row.w - 1; i < row.w; ++i, x += row.nStep) bChanged |= visit(x);
    return bChanged;
}

// Rounds of a forward and a backward scan, until one changes nothing; at least one, at most nMaxRounds. The number run.
template <class ScanBoth>
int RunRounds(int nMaxRounds, const ScanBoth& scanBoth)
{
    int nRounds = 1;
    while (scanBoth() && nRounds < nMaxRounds) ++nRounds;
    return nRounds;
}

void DropBelow(CImage& ghost, int nLow)
{
    std::replace_if(
        ghost.pData, ghost.pData + ghost.Samples(), [nLow](uint8_t v) { return v < nLow; }, uint8_t{0});
}

// A seed under about 9 x 9 pixels is a speck.
bool FindSeeds(const CImage& ghost, int nHigh, CImage& seeds)
{
    if (!Morphology::ThresholdAbove(ghost, seeds, nHigh)) return false;
    for (int i = 0; i < 2; ++i) {
        if (!Morphology::ErodeBinarySquareFast(seeds, seeds)) return false;
    }
    for (int i = 0; i < 2; ++i) {
        if (!Morphology::ErodeBinaryCrossFast(seeds, seeds)) return false;
    }
    return Morphology::BitAnd(seeds, ghost, seeds);  // 255 becomes the ghost's value
}

// Most rows hold nothing that could grow: that is found out many pixels at a time.
bool HasUngrown(const uint8_t* pGhost, const uint8_t* pSeeds, int w)
{
    uint8_t nUngrown = 0;
    for (int x = 0; x < w; ++x) nUngrown |= pSeeds[x] == 0 ? pGhost[x] : 0;
    return nUngrown != 0;
}

bool GrowSeeds(const CImage& ghost, CImage& seeds, int nStep)
{
    return ScanRows(seeds, nStep, [&](const ScanRow& row) {
        const uint8_t* pGhost = ghost.Row(row.y);
        if (!HasUngrown(pGhost, row.pHere, row.w)) return false;
        return ScanPixels(row, [&](int x) {
            if (row.pHere[x] != 0 || pGhost[x] == 0 || !AnyPassedAbove(row, x, 0)) return false;
            row.pHere[x] = pGhost[x];
            return true;
        });
    });
}

// The smoothed pictures are those of this pass alone.
struct RefineSides {
    const CShortImage &edgesDark, &edgesBright;
    CImage blurDark, blurBright;
};

// What the pictures say about the place of a pixel.
struct Place {
    int nFlat;                       // edge values below the threshold, of 6
    int nBrightDark, nBrightBright;  // samples above the threshold, of 3 each
};

Place LookAt(const RefineSides& sides, int x, int y, int nEdgeTh, int nBrTh)
{
    const int16_t* pEdgesDark = sides.edgesDark.Row(y) + 3 * x;
    const int16_t* pEdgesBright = sides.edgesBright.Row(y) + 3 * x;
    const uint8_t* pDark = sides.blurDark.Row(y) + 3 * x;
    const uint8_t* pBright = sides.blurBright.Row(y) + 3 * x;
    Place place{};
    for (int c = 0; c < 3; ++c) {
        place.nFlat += (std::abs(pEdgesDark[c]) < nEdgeTh) + (std::abs(pEdgesBright[c]) < nEdgeTh);
        place.nBrightDark += pDark[c] > nBrTh;
        place.nBrightBright += pBright[c] > nBrTh;
    }
    return place;
}

// The first row of a forward scan gives way to any flat and any bright sample; that difference is part of the result.
bool GivesWay(const Place& place, bool bFirstForwardRow)
{
    if (bFirstForwardRow) return place.nFlat > 0 && place.nBrightDark + place.nBrightBright > 0;
    return place.nFlat == 6 && (place.nBrightDark == 3 || place.nBrightBright == 3);
}

bool HasAbove(const uint8_t* pRow, int w, int nTh)
{
    uint8_t nLargest = 0;
    for (int x = 0; x < w; ++x) nLargest = std::max(nLargest, pRow[x]);
    return nLargest > nTh;
}

// Only pixels with no mask before them in the scan may go.
bool ShrinkMask(CImage& ghost, const RefineSides& sides, int nStep, const CGhostProcessFilter& params)
{
    const int nMaskTh = params.nGhostBinaryThresh;
    return ScanRows(ghost, nStep, [&](const ScanRow& row) {
        const bool bFirstForwardRow = nStep > 0 && row.pBefore == nullptr;
        if (!HasAbove(row.pHere, row.w, nMaskTh)) return false;
        return ScanPixels(row, [&](int x) {
            if (row.pHere[x] <= nMaskTh || AnyPassedAbove(row, x, nMaskTh)) return false;
            const Place place = LookAt(sides, x, row.y, params.nRefineGhostEdgeTh, params.nRefineGhostBrTh);
            if (!GivesWay(place, bFirstForwardRow)) return false;
            row.pHere[x] = 0;
            return true;
        });
    });
}

bool FitsGhost(const CImage& ghost, const GhostSide& side)
{
    const auto Fits = [&](const auto& picture) {
        return picture.nWidth == ghost.nWidth && picture.nHeight == ghost.nHeight && picture.nDim == 3;
    };
    return !ghost.Empty() && Fits(side.image) && Fits(side.edges);
}

bool Blur(const CImage& image, CImage& blurred)
{
    return blurred.CopyFrom(image) && CSmoothFilter5x5::SmoothImage8(blurred, blurred, true);
}

// The ghost fades out over 32 grey values above the limit.
void FadeSaturated(CImage& ghost, const CImage& blurBright, int nLimit)
{
    for (size_t i = 0; i < ghost.Samples(); ++i) {
        const uint8_t* pBgr = blurBright.pData + 3 * i;
        const int nOver = ((2 * pBgr[0] + 9 * pBgr[1] + 5 * pBgr[2]) >> 4) - nLimit;  // luma without rounding
        if (nOver > 0) ghost.pData[i] = static_cast<uint8_t>((std::max(32 - nOver, 0) * ghost.pData[i]) >> 5);
    }
}

// Everything before the mask shrinks.
bool PrepareMask(CImage& ghost, const RefineSides& sides, const CGhostProcessFilter& params, const GhostDumps& dumps)
{
    if (params.bCloseBfRefine) {
        if (!GhostClose(ghost, params.nGhostCloseIter)) return false;
        dumps.Save(ghost, "GhostDump/GhostClose_%s.bmp", dumps.Tag());
    }
    dumps.Save(sides.blurDark, "GhostDump/Blur_%s_dark.bmp", dumps.Tag());
    dumps.Save(sides.blurBright, "GhostDump/Blur_%s_bright.bmp", dumps.Tag());
    if (params.bSaturateNoGhostEnable) {
        FadeSaturated(ghost, sides.blurBright, params.nGhostLimit[1]);
        dumps.Save(ghost, "Ghostdump/Ghost_%s_bf_Refine.bmp", dumps.Tag());  // a folder of its own, by its letters
    }
    return CheckThre(ghost, params.nCheckThre[0], params.nCheckThre[1], params, dumps);
}

}  // namespace

bool CheckThre(CImage& ghost, int nLow, int nHigh, const CGhostProcessFilter& params, const GhostDumps& dumps)
{
    DropBelow(ghost, nLow);
    dumps.Save(ghost, "GhostDump/CheckThre%s_bf.bmp", dumps.Tag());
    CImage seeds{};
    ImageScope scope(seeds);
    if (!FindSeeds(ghost, nHigh, seeds)) return false;
    const int nRounds = RunRounds(params.nMaxCheckThreIt, [&] {
        const bool bForward = GrowSeeds(ghost, seeds, 1);
        return GrowSeeds(ghost, seeds, -1) || bForward;
    });
    HdrPrintf("CheckThre Iteration=%d \n", nRounds);
    dumps.Save(seeds, "GhostDump/CheckThre%s_Aft.bmp", dumps.Tag());
    ghost.Swap(seeds);
    return true;
}

bool RefineGhost(CImage& ghost, const GhostSide& dark, const GhostSide& bright, int nMaxIt,
                 const CGhostProcessFilter& params, const GhostDumps& dumps)
{
    if (!FitsGhost(ghost, dark) || !FitsGhost(ghost, bright)) return false;
    RefineSides sides{dark.edges, bright.edges, {}, {}};
    ImageScope darkScope(sides.blurDark), brightScope(sides.blurBright);
    if (!Blur(dark.image, sides.blurDark) || !Blur(bright.image, sides.blurBright)) return false;
    if (!PrepareMask(ghost, sides, params, dumps)) return false;

    int nRounds = 0;
    if (nMaxIt >= 0) {
        nRounds = RunRounds(nMaxIt + 1, [&] {
            const bool bForward = ShrinkMask(ghost, sides, 1, params);
            return ShrinkMask(ghost, sides, -1, params) || bForward;
        });
    }
    HdrPrintf("RefineGhostIteration=%d\n", nRounds);
    return true;
}

}  // namespace vkr
