#include "tone/hsv_stretch_tone.h"

#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "tone/brightness_statistics.h"
#include "tone/clip_saturation.h"
#include "tone/face_curve.h"
#include "tone/fused_dump.h"
#include "tone/hsv_stretch_passes.h"
#include "tone/hsv_tone.h"
#include "tone/stretch_levels.h"
#include "tone/tone_curve.h"

namespace vkr {

namespace {

// The gamma that brings the mean back, for the skin-model pass alone.
void BuildStretchBoost(const CShortImage& fused, const ToneParams& params, const StretchLevels& levels,
                       GammaLut& gammaLut)
{
    const int32_t nLow = levels.m_nLowLevel;
    const int32_t nMean = GetMeanBrightness(fused, params.nHistStatType);
    const int32_t nInMean = Clamp(nMean, 1, 255);
    const int32_t nOutMean = Clamp(DivOrZero((nMean - nLow) * 255, levels.m_nHighLevel - nLow), 1, 255);
    HdrPrintf("InMeanY %i OutMeanY %i \n", nInMean, nOutMean);
    BuildBoostLut(nInMean, nOutMean, params, gammaLut);
}

void BuildValueCurve(const SortedLevels& reference, const SortedLevels& fusion, const FaceParams& faceParams,
                     const StretchLevels& levels, ToneLut& toneLut)
{
    CurveAnchors a = MakeAnchors(reference, fusion, faceParams.nFaceHighCombineWeight);
    if (a.nMaxRef <= a.nMinRef) {  // a face of one level: a step of one
        a.nMinFus = a.nMaxFus - 1;
        a.nMinRef = a.nMaxRef - 1;
    }
    HdrPrintf("Fusion    Image High V: %i Low V: %i \n", a.nMaxFus, a.nMinFus);
    HdrPrintf("Reference Image High V: %i Low V: %i \n", a.nMaxRef, a.nMinRef);
    BuildFaceCurve(a, levels, toneLut);
}

bool RunGuidedPass(const CShortImage& fused, const CImage& reference, const FaceToneParams& params,
                   const ToneLut& toneLut, const StretchLevels& levels, CImage& out)
{
    HsvWeights weights;
    BuildGuideWeights(params, weights);
    ReferenceGuidedPass(fused, reference, weights, toneLut, levels, out);
    return true;
}

bool RunSkinModelPass(const FusedFace& burst, const FaceToneParams& params, const GammaLut& gammaLut,
                      const ToneLut& toneLut, const StretchLevels& levels, CImage& out)
{
    CImage hsv{}, excess{};
    ImageScope hsvScope(hsv), excessScope(excess);
    if (!hsv.Allocate(out.nWidth, out.nHeight) || !excess.AllocateGray(out.nWidth, out.nHeight)) return false;
    SkinModel model;
    model.nMostHueShift = params.nHSVHueChangeThres;
    GetFaceAndBackgroundDiffHSV(burst.box, burst.reference, burst.fused, hsv, excess, model.backFix, model.faceFix);
    if (!params.bHSVTone || params.bHSVToneFace) model.backFix = HSVFix{};
    if (!params.bHSVTone) model.faceFix = HSVFix{};
    BuildSkinWeights(params, model.weights);
    HdrPrintf("Width %i Height %i \n", out.nWidth, out.nHeight);
    SkinModelPass(burst.fused, hsv, excess, model, gammaLut, toneLut, levels, out);
    return true;
}

bool Stretch(const FusedFace& burst, const FaceStretch& stretch, const MeasuredFace& face, StretchLevels& levels,
             CImage& out)
{
    CShortImage& fused = burst.fused;
    const CImage& reference = burst.reference;
    const ToneParams& params = stretch.tone;
    if (fused.Empty() || fused.nDim != 6 || reference.Empty() || reference.nDim != 3) return false;
    if (reference.nWidth != fused.nWidth || reference.nHeight != fused.nHeight) return false;
    if (stretch.bCheckSatuEnable && !ClipSaturation(fused, burst.satuMask, params.nSaturatePsThre)) return false;
    if (!out.Allocate(fused.nWidth, fused.nHeight)) return false;
    const SortedLevels ref = SortLevels(face.reference.vLow), fus = SortLevels(face.fusion.vLow);
    HdrPrintf("High %i Mid %i Low %i \n", ref.nHigh, ref.nMid, ref.nLow);

    if (KeepsDetail(params)) {
        if (!FollowStretchLevels(fused, params, levels)) return false;
        HdrPrintf("LowLevel = %d, HighLevel=%d \n", levels.m_nLowLevel, levels.m_nHighLevel);
    }
    GammaLut gammaLut;
    BuildStretchBoost(fused, params, levels, gammaLut);
    if (stretch.dumps) DumpFused(fused, out);
    ToneLut toneLut;
    BuildValueCurve(ref, fus, stretch.face, levels, toneLut);
    PrintHsvSizes(out.nWidth, out.nHeight, reference);
    const bool bDone = stretch.faceTone.bHSP2PTone
                           ? RunGuidedPass(fused, reference, stretch.faceTone, toneLut, levels, out)
                           : RunSkinModelPass(burst, stretch.faceTone, gammaLut, toneLut, levels, out);
    stretch.dumps.If(bDone).Save(out, "Dump/AfterHSVStretchTone.bmp");
    return bDone;
}

}  // namespace

bool HSVStretchTone(const FusedFace& burst, const FaceStretch& stretch, const MeasuredFace& face, StretchLevels& levels,
                    CImage& out)
{
    if (Stretch(burst, stretch, face, levels, out)) return true;
    out.Release();
    return false;
}

}  // namespace vkr
