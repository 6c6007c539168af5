#include "tone/hsv_tone.h"

#include <algorithm>

#include "face/box_runs.h"
#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "tone/hsv_convert.h"
#include "tone/skin_colour.h"

namespace vkr {

namespace {

constexpr int kStrip = 256;  // pixels

void CorrectPixel(const HsvCorrection& correction, uint8_t* pHsv)
{
    pHsv[0] = static_cast<uint8_t>(pHsv[0] + correction.nHueShift);
    pHsv[1] = correction.vSaturation[pHsv[1]];
}

void CorrectPixels(const HsvCorrection& correction, uint8_t* pHsv, int64_t nPixels)
{
    for (int64_t i = 0; i < nPixels; ++i) CorrectPixel(correction, pHsv + 3 * i);
}

// The pair of the whole picture for skin, that of the skin for all else: crossed, which results rely on.
void CorrectCrossed(const HsvCorrection& back, const HsvCorrection& face, uint8_t* pHsv, int nPixels)
{
    for (int i = 0; i < nPixels; ++i, pHsv += 3) CorrectPixel(IsCorrectedSkin(pHsv) ? back : face, pHsv);
}

// Corrected pixels into the picture, but for those that the reference shows blown out.
void StoreUnlessBlown(const uint8_t* pHsv, const uint8_t* pRef, uint8_t* pOut, int nWidth)
{
    uint8_t vBgr[3 * kStrip];
    for (int x = 0; x < nWidth; x += kStrip) {
        const int n = std::min(nWidth - x, kStrip);
        HsvToBgrRow(pHsv + 3 * x, vBgr, n);
        for (int i = 0; i < n; ++i, pRef += 3, pOut += 3) {
            if (pRef[0] == 255 || pRef[1] == 255 || pRef[2] == 255) continue;
            for (int c = 0; c < 3; ++c) pOut[c] = vBgr[3 * i + c];
        }
    }
}

void CorrectOnce(const HsvCorrection& correction, uint8_t* pBgr, int64_t nPixels)
{
    uint8_t vHsv[3 * kStrip];
    for (int64_t x = 0; x < nPixels; x += kStrip) {
        const int n = static_cast<int>(std::min<int64_t>(nPixels - x, kStrip));
        BgrToHsvRow(pBgr + 3 * x, vHsv, n);
        CorrectPixels(correction, vHsv, n);
        HsvToBgrRow(vHsv, pBgr + 3 * x, n);
    }
}

// A colour corrected again and again comes back before long: whole rounds of the colours are left out. The mark that
// finds the round is set ever further apart.
void CorrectOften(const HsvCorrection& correction, uint8_t* pBgr, int64_t nTimes)
{
    uint8_t vMark[3] = {pBgr[0], pBgr[1], pBgr[2]};
    int64_t nSince = 0, nNextMark = 1;
    for (int64_t i = 1; i <= nTimes; ++i) {
        CorrectOnce(correction, pBgr, 1);
        ++nSince;
        if (std::equal(vMark, vMark + 3, pBgr)) {
            nTimes = i + (nTimes - i) % nSince;
        } else if (nSince == nNextMark) {
            std::copy_n(pBgr, 3, vMark);
            nSince = 0;
            nNextMark *= 2;
        }
    }
}

// Both pictures in hue, saturation, value.
bool ConvertBoth(const CImage& reference, const CImage& out, CImage& refHsv, CImage& outHsv)
{
    if (reference.nWidth != out.nWidth || reference.nHeight != out.nHeight || out.Empty()) return false;
    return RGB2HSV(reference, refHsv) && RGB2HSV(out, outHsv);
}

void CorrectPicture(const CImage& reference, const HSVFix& backFix, const HSVFix& faceFix, const FaceToneParams& params,
                    CImage& outHsv, CImage& out)
{
    const HsvCorrection face = MakeCorrection(faceFix, params);
    const HsvCorrection back = params.bHSVSmooth ? face : MakeCorrection(backFix, params);
    ParallelRows(out.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            CorrectCrossed(back, face, outHsv.Row(y), out.nWidth);
            StoreUnlessBlown(outHsv.Row(y), reference.Row(y), out.Row(y), out.nWidth);
        }
    });
}

}  // namespace

void PrintHsvSizes(int nWidth, int nHeight, const CImage& reference)
{
    HdrPrintf("Fusioned Image nWidth = %i, nHeight = %i\n", nWidth, nHeight);
    HdrPrintf("Reference Image nWidth = %i, nHeight = %i\n", reference.nWidth, reference.nHeight);
}

HsvCorrection MakeCorrection(const HSVFix& fix, const FaceToneParams& params)
{
    const bool bSmooth = params.bHSVSmooth != 0;
    const int64_t n = params.nHSVSmoothSize;
    const int64_t nFactor = bSmooth ? 2 * n : 1;
    const int64_t nHueBits = bSmooth ? n + 7 : 8, nSatBits = bSmooth ? n + 8 : 9;
    const auto nShift = static_cast<int32_t>((fix.nHueFix * nFactor) >> nHueBits);
    HsvCorrection correction;
    correction.nHueShift = Clamp(nShift, -params.nHSVHueChangeThres, params.nHSVHueChangeThres);
    for (int32_t s = 0; s < 256; ++s) {
        const int64_t nSaturation = (fix.nSatGain * nFactor * s) >> nSatBits;
        correction.vSaturation[s] = static_cast<uint8_t>(std::clamp<int64_t>(nSaturation, 0, 255));
    }
    return correction;
}

bool HSVTone(const FaceBox& box, const CImage& reference, const FaceToneParams& params, const StageDumps& dumps,
             CImage& out)
{
    PrintHsvSizes(out.nWidth, out.nHeight, reference);
    CImage refHsv{}, outHsv{};
    ImageScope refScope(refHsv), outScope(outHsv);
    if (!ConvertBoth(reference, out, refHsv, outHsv)) return false;
    HSVFix backFix, faceFix;
    if (params.bHSVToneSeparate) {
        GetFaceDiffHSV(box, refHsv, outHsv, faceFix);
        GetBackgroundDiffHSV(refHsv, outHsv, backFix);
    } else {
        GetFaceAndBackgroundDiffHSV(box, refHsv, outHsv, backFix, faceFix);
    }
    CorrectPicture(reference, backFix, faceFix, params, outHsv, out);
    dumps.Save(out, "Dump/AfterHSVTone.bmp");
    return true;
}

bool HSVToneFace(const FaceBox& box, const CImage& reference, const FaceToneParams& params, const StageDumps& dumps,
                 CImage& out)
{
    PrintHsvSizes(out.nWidth, out.nHeight, reference);
    CImage refHsv{}, outHsv{};
    ImageScope refScope(refHsv), outScope(outHsv);
    if (!ConvertBoth(reference, out, refHsv, outHsv)) return false;
    HSVFix faceFix;
    GetFaceDiffHSV(box, refHsv, outHsv, faceFix);
    const HsvCorrection correction = MakeCorrection(faceFix, params);
    VisitBoxRuns(box, out.nWidth, out.nHeight, [&](int64_t nBegin, int64_t nEnd, int64_t nTimes) {
        uint8_t* pRun = out.pData + 3 * nBegin;
        if (nTimes == 1) return CorrectOnce(correction, pRun, nEnd - nBegin);
        for (int64_t i = nBegin; i < nEnd; ++i, pRun += 3) CorrectOften(correction, pRun, nTimes);
    });
    dumps.Save(out, "Dump/AfterHSVTone.bmp");
    return true;
}

}  // namespace vkr
