#include "tone/face_tone_stretch.h"

#include "foundation/fixed_point.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "tone/brightness_statistics.h"
#include "tone/clip_saturation.h"
#include "tone/face_curve.h"
#include "tone/face_tone_rows.h"
#include "tone/fused_dump.h"
#include "tone/mean_colour.h"
#include "tone/stretch_levels.h"
#include "tone/tone_curve.h"

namespace vkr {

namespace {

// All three by the ratio that takes component k to nTarget.
void ScaleFace(int k, int32_t nTarget, FaceIntensity& face)
{
    for (int c = 0; c < 3; ++c) {
        if (c != k) face.vLow[c] = DivOrZero(nTarget * face.vLow[c], face.vLow[k]);
    }
    face.vLow[k] = nTarget;
}

void PrintMeans(const CImage& reference, const CShortImage& fused)
{
    const MeanHsv ref = MeanColour(reference), fus = MeanColour(fused);
    HdrPrintf("Before Stretch Mean Reference H %.2f, S %.2f, V %.2f\n", ref.fHue, ref.fSaturation, ref.fValue);
    HdrPrintf("Before Stretch Mean Fusion H %.2f, S %.2f, V %.2f\n", fus.fHue, fus.fSaturation, fus.fValue);
}

void BuildStretchGamma(int32_t nInMean, const ToneParams& params, const StretchLevels& levels, GammaLut& gammaLut)
{
    const int32_t nLow = levels.m_nLowLevel;
    const int32_t nOutMean = DivOrZero(255 * (nInMean - nLow), levels.m_nHighLevel - nLow);
    HdrPrintf("OutMeanY bf=%d\n", nOutMean);
    BuildGammaLut(nInMean, nOutMean, params, gammaLut);  // the identity where no curve applies
}

// The curve of the two faces, the gamma folded in.
void BuildFaceLut(const FaceParams& faceParams, const GammaLut& gammaLut, const StretchLevels& levels,
                  MeasuredFace& face, ToneLut& toneLut)
{
    const auto& vRef = face.reference.vLow;
    const auto& vFus = face.fusion.vLow;
    HdrPrintf("LowLevel = %d, HighLevel=%d\n", levels.m_nLowLevel, levels.m_nHighLevel);
    HdrPrintf("Refer  Face Intensity = [%i, %i, %i]\n", vRef[0], vRef[1], vRef[2]);
    BringFaceIntoRange(faceParams, face.reference);
    HdrPrintf("RefIntensity B %i G %i R %i\n", vRef[0], vRef[1], vRef[2]);
    HdrPrintf("FusionIntensity B %i G %i R %i\n", vFus[0], vFus[1], vFus[2]);

    const SortedLevels sorted = SortLevels(vRef);
    HdrPrintf("High %i Mid %i Low %i \n", sorted.nHigh, sorted.nMid, sorted.nLow);
    const CurveAnchors a = MakeAnchors(sorted, SortLevels(vFus), faceParams.nFaceHighCombineWeight);
    HdrPrintf("MinRef %i MaxRef %i MinFus %i MaxFus %i \n", a.nMinRef, a.nMaxRef, a.nMinFus, a.nMaxFus);
    BuildFaceCurve(a, levels, toneLut);
    for (uint8_t& nValue : toneLut.vValue) nValue = static_cast<uint8_t>(gammaLut.vValue[nValue]);
}

void WritePicture(const CShortImage& fused, const ToneLut& toneLut, const StretchLevels& levels, bool bHighInside,
                  CImage& out)
{
    const FaceRowLut lut = MakeFaceRowLut(toneLut, levels);
    ParallelRows(fused.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            FaceToneRow(fused.Row(y), out.Row(y), fused.nWidth, lut, bHighInside);
        }
    });
}

bool Stretch(const FusedFace& burst, const FaceStretch& stretch, MeasuredFace& face, StretchLevels& levels, CImage& out)
{
    CShortImage& fused = burst.fused;
    const ToneParams& params = stretch.tone;
    if (fused.Empty() || fused.nDim != 6) return false;
    if (stretch.bCheckSatuEnable && !ClipSaturation(fused, burst.satuMask, params.nSaturatePsThre)) return false;
    const int32_t nInMean = GetMeanBrightness(fused, params.nHistStatType);
    HdrPrintf("InMean=%d\n", nInMean);
    HdrPrintf("nWidth = %i, nHeight = %i, nDim = %i\n", fused.nWidth, fused.nHeight, fused.nDim);
    if (!out.Allocate(fused.nWidth, fused.nHeight)) return false;

    if (KeepsDetail(params)) {
        if (!FollowStretchLevels(fused, params, levels)) return false;
        HdrPrintf("LowLevel = %d, HighLevel=%d \n", levels.m_nLowLevel, levels.m_nHighLevel);
    }
    if (stretch.dumps) {
        PrintMeans(burst.reference, fused);
        DumpFused(fused, out);
    }
    GammaLut gammaLut;
    BuildStretchGamma(nInMean, params, levels, gammaLut);
    ToneLut toneLut;
    BuildFaceLut(stretch.face, gammaLut, levels, face, toneLut);
    WritePicture(fused, toneLut, levels, stretch.bAddHighFrequency != 0, out);
    stretch.dumps.Save(out, "Dump/Stretch.bmp");
    return true;
}

}  // namespace

void BringFaceIntoRange(const FaceParams& params, FaceIntensity& face)
{
    for (int k = 0; k < 3; ++k) {
        if (face.vLow[k] > params.nFaceHighThres[k]) return ScaleFace(k, params.nFaceHighThres[k], face);
    }
    for (int k = 0; k < 3; ++k) {
        if (face.vLow[k] < params.nFaceLowThres[k]) return ScaleFace(k, params.nFaceLowThres[k], face);
    }
}

bool FaceToneStretch(const FusedFace& burst, const FaceStretch& stretch, MeasuredFace& face, StretchLevels& levels,
                     CImage& out)
{
    if (Stretch(burst, stretch, face, levels, out)) return true;
    out.Release();
    return false;
}

}  // namespace vkr
