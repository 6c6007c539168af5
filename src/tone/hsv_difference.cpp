#include "tone/hsv_difference.h"

#include <algorithm>
#include <atomic>

#include "face/box_runs.h"
#include "foundation/fixed_point.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"
#include "tone/hsv_convert.h"
#include "tone/skin_colour.h"

namespace vkr {

namespace {

const char* const kTimer = "===========GetAVGDiffHSV";

struct DiffSums {
    int64_t nHue = 0, nReference = 0, nFused = 0, nCount = 0;
};

void AddTimes(const DiffSums& part, int64_t nTimes, DiffSums& sums)
{
    sums.nHue += part.nHue * nTimes;
    sums.nReference += part.nReference * nTimes;
    sums.nFused += part.nFused * nTimes;
    sums.nCount += part.nCount * nTimes;
}

// Sums that several threads add to.
struct SharedSums {
    std::atomic<int64_t> nHue{0}, nReference{0}, nFused{0}, nCount{0};

    void Add(const DiffSums& part)
    {
        nHue += part.nHue;
        nReference += part.nReference;
        nFused += part.nFused;
        nCount += part.nCount;
    }
    DiffSums Value() const { return {nHue, nReference, nFused, nCount}; }
};

// Pixels of hue, saturation, value.
void AddSkin(const uint8_t* pRef, const uint8_t* pFus, int64_t nPixels, DiffSums& sums)
{
    for (int64_t i = 0; i < nPixels; ++i, pRef += 3, pFus += 3) {
        if (!IsMeasuredSkin(pRef)) continue;
        const int32_t nDiff = pRef[0] - pFus[0];
        sums.nHue += nDiff < -128 ? nDiff + 255 : nDiff;
        sums.nReference += pRef[1];
        sums.nFused += pFus[1];
        ++sums.nCount;
    }
}

void AddPixels(const uint8_t* pRef, const uint8_t* pFus, int64_t nPixels, DiffSums& sums)
{
    for (int64_t i = 0; i < nPixels; ++i, pRef += 3, pFus += 3) {
        const int32_t nDiff = pRef[0] - pFus[0];
        sums.nHue += nDiff < -128 ? nDiff + 255 : (nDiff > 128 ? nDiff - 255 : nDiff);
        sums.nReference += pRef[1];
        sums.nFused += pFus[1];
    }
    sums.nCount += nPixels;
}

// nHue * 256 and nReference * 512 fit 64 bits also where a box counts its edge rows again and again.
HSVFix MakeFix(const DiffSums& sums)
{
    HSVFix fix;
    fix.nHueFix = static_cast<int16_t>(DivOrZero64(sums.nHue * 256, sums.nCount));
    fix.nSatGain = static_cast<int16_t>(DivOrZero64(sums.nReference * 512, sums.nFused));
    return fix;
}

void FinishFace(const DiffSums& sums, HSVFix& fix)
{
    fix = sums.nCount == 0 ? HSVFix{0, 1} : MakeFix(sums);
    HdrPrintf("Face In HSV Skin Color Number = %i\n", static_cast<int>(sums.nCount));
    HdrPrintf("Face       AVG Fix HSV = [%i, %i]\n", fix.nHueFix, fix.nSatGain);
}

void FinishBackground(const DiffSums& sums, HSVFix& fix)
{
    fix = MakeFix(sums);
    HdrPrintf("Background AVG Fix HSV = [%i, %i]\n", fix.nHueFix, fix.nSatGain);
}

// Adds n pixels from column x of row y on, to the face as far as they lie in the box.
void AddBoth(const FaceBox& box, int y, int x, int n, const uint8_t* pRef, const uint8_t* pFus, DiffSums& face,
             DiffSums& back)
{
    AddPixels(pRef, pFus, n, back);
    if (y < box.y1 || y > box.y2) return;
    const int nBegin = Clamp(box.x1, x, x + n);
    const int nEnd = static_cast<int>(std::clamp<int64_t>(int64_t{box.x2} + 1, x, x + n));
    if (nBegin < nEnd) AddSkin(pRef + 3 * (nBegin - x), pFus + 3 * (nBegin - x), nEnd - nBegin, face);
}

// Calls fnRow(y, face, back) for every row, on the team, and finishes both pairs.
template <class Fn>
void GatherBoth(int nHeight, const Fn& fnRow, HSVFix& backFix, HSVFix& faceFix)
{
    SharedSums face, back;
    ParallelRows(nHeight, [&](RowBlock rows) {
        DiffSums facePart, backPart;
        for (int y = rows.nBegin; y < rows.nEnd; ++y) fnRow(y, facePart, backPart);
        face.Add(facePart);
        back.Add(backPart);
    });
    FinishFace(face.Value(), faceFix);
    FinishBackground(back.Value(), backFix);
}

// The base within 0 .. 255, and the low byte of what its largest component lies above.
void ClipBaseRow(const int16_t* pFused, uint8_t* pBgr, uint8_t* pExcess, int nPixels)
{
    for (int x = 0; x < nPixels; ++x, pFused += 6, pBgr += 3) {
        for (int c = 0; c < 3; ++c) pBgr[c] = ClampU8(pFused[c]);
        const int32_t nLargest = std::max({pFused[0], pFused[1], pFused[2]});
        pExcess[x] = static_cast<uint8_t>(std::max(nLargest - 255, 0));
    }
}

}  // namespace

void GetFaceDiffHSV(const FaceBox& box, const CImage& refHsv, const CImage& fusHsv, HSVFix& fix)
{
    const StageTimer timer(kTimer);
    DiffSums sums;
    VisitBoxRuns(box, fusHsv.nWidth, fusHsv.nHeight, [&](int64_t nBegin, int64_t nEnd, int64_t nTimes) {
        DiffSums run;
        AddSkin(refHsv.pData + 3 * nBegin, fusHsv.pData + 3 * nBegin, nEnd - nBegin, run);
        AddTimes(run, nTimes, sums);
    });
    FinishFace(sums, fix);
}

void GetBackgroundDiffHSV(const CImage& refHsv, const CImage& fusHsv, HSVFix& fix)
{
    const StageTimer timer(kTimer);
    SharedSums sums;
    ParallelRows(fusHsv.nHeight, [&](RowBlock rows) {
        DiffSums part;
        for (int y = rows.nBegin; y < rows.nEnd; ++y) AddPixels(refHsv.Row(y), fusHsv.Row(y), fusHsv.nWidth, part);
        sums.Add(part);
    });
    FinishBackground(sums.Value(), fix);
}

void GetFaceAndBackgroundDiffHSV(const FaceBox& box, const CImage& refHsv, const CImage& fusHsv, HSVFix& backFix,
                                 HSVFix& faceFix)
{
    const StageTimer timer(kTimer);
    const auto AddRow = [&](int y, DiffSums& face, DiffSums& back) {
        AddBoth(box, y, 0, fusHsv.nWidth, refHsv.Row(y), fusHsv.Row(y), face, back);
    };
    GatherBoth(fusHsv.nHeight, AddRow, backFix, faceFix);
}

void GetFaceAndBackgroundDiffHSV(const FaceBox& box, const CImage& reference, const CShortImage& fused, CImage& fusHsv,
                                 CImage& excess, HSVFix& backFix, HSVFix& faceFix)
{
    const StageTimer timer(kTimer);
    constexpr int kStrip = 256;  // pixels of the reference that are converted at a time
    const auto AddRow = [&](int y, DiffSums& face, DiffSums& back) {
        uint8_t vRef[3 * kStrip];
        uint8_t* pHsv = fusHsv.Row(y);
        ClipBaseRow(fused.Row(y), pHsv, excess.Row(y), fused.nWidth);
        BgrToHsvRow(pHsv, pHsv, fused.nWidth);
        for (int x = 0; x < fused.nWidth; x += kStrip) {
            const int n = std::min(fused.nWidth - x, kStrip);
            BgrToHsvRow(reference.Row(y) + 3 * x, vRef, n);
            AddBoth(box, y, x, n, vRef, pHsv + 3 * x, face, back);
        }
    };
    GatherBoth(fused.nHeight, AddRow, backFix, faceFix);
}

}  // namespace vkr
