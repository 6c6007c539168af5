#include "face/face_intensity.h"
#include "face/face_marks.h"
#include "face/face_search.h"
#include "flow/flow_temporaries.h"
#include "flow/multi_exposure_flow.h"
#include "flow/stage_thread.h"
#include "foundation/bmp.h"
#include "foundation/colour.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/stage_probe.h"
#include "foundation/timing.h"
#include "fusion/edge_layers.h"
#include "fusion/pyramid_fusion.h"
#include "fusion/working_frames.h"
#include "ghosts/ghost_embedding.h"
#include "tone/edge_restore.h"
#include "tone/face_tone_stretch.h"
#include "tone/global_stretch.h"
#include "tone/hsv_stretch_tone.h"
#include "tone/hsv_tone.h"
#include "weights/build_weight.h"
#include "weights/satu_mask.h"

namespace vkr {

// Two or more usable frames: half-size work, full-size luma detail, one picture. The edge layer is fused on a thread of
// its own while fusion, tone and upscaling run here; nothing of them is shared but the read-only weights and layers.
bool CMultiExposureHDRProcessFlowOpt::FuseBurst(const Burst& burst, FlowTemporaries& temp, CYuvImage& output)
{
    if (!MakeWorkingFrames(burst, temp) || !MarkSaturation(temp)) return false;
    FindFace(burst, temp);
    if (!WeighExposures(burst, temp)) return false;

    StageThread edgeThread([&] {
        return FuseEdgeLayers(temp.m_Level0Weights, temp.vDetailLayers, burst.nExposureNum, *this, temp.m_EdgeLayer);
    });
    Tic();
    const bool bFused = PyramidFusion(temp.vWorkFrames, temp.vWeights, temp.vCoefs, burst.nExposureNum, *this, *this,
                                      bDebugDumpEnable, temp.m_Fused);
    Toc("==== ==== PyramidFusion Done");
    ProbeImage("fused", temp.m_Fused);
    for (CImage& frame : temp.vWorkFrames) {
        const bool bToneReadsIt = ToneFollowsFace(temp) && &frame == &temp.vWorkFrames[burst.nReference];
        if (!bToneReadsIt) frame.Release();
    }
    for (CImage& level : temp.vWeights) level.Release();
    if (!bFused || temp.m_Fused.Empty() || !MapTone(burst, temp)) return false;
    MarkFaces(burst, temp);
    if (!UpscaleTone(temp)) return false;
    Tic();
    if (!edgeThread.Join()) return false;
    return RestoreEdges(temp, output);
}

bool CMultiExposureHDRProcessFlowOpt::MakeWorkingFrames(const Burst& burst, FlowTemporaries& temp)
{
    m_ReadyFlags.Reset();
    Tic();
    const bool bDone =
        BinarizeFrames(burst.vFrames, burst.nExposureNum, bUVOrder, m_ReadyFlags, temp.vWorkFrames, temp.vDetailLayers);
    m_FaceIntensity = nGoodBrightnessTarget[burst.nReference];
    Toc("==== ==== Binarize Done");
    for (int k = 0; k < burst.nExposureNum; ++k) ProbeImage("work", temp.vWorkFrames[k], k);
    return bDone;
}

bool CMultiExposureHDRProcessFlowOpt::MarkSaturation(FlowTemporaries& temp)
{
    Tic();
    const bool bDone = !bCheckSatuEnable || GenerateSatuMask(temp.vWorkFrames[0], nSaturateThre, temp.m_SatuMask);
    if (bCheckSatuEnable && bDebugDumpEnable) SaveBmpGray(temp.m_SatuMask, "Dump/SatuMask.bmp");
    Toc("==== ==== GenerateSatuMask Done");
    ProbeImage("satumask", temp.m_SatuMask);
    return bDone;
}

// A burst without a face switches the search off for the bursts after it.
void CMultiExposureHDRProcessFlowOpt::FindFace(const Burst& burst, FlowTemporaries& temp)
{
    Tic();
    if (bAIMask) {
        temp.m_FaceBox = SearchFace(temp.vWorkFrames[burst.nReference], burst.nOrientation, burst.nFaceSource,
                                    burst.faces.pFaces, burst.faces.nCount, *this, bDebugDumpEnable != 0);
        if (temp.m_FaceBox.x2 == 0 && temp.m_FaceBox.y2 == 0) bAIMask = 0;
    }
    if (bAIMask) AimAtFace(burst, temp);
    Toc("====AI1");
}

// The weights of the reference exposure aim at the brightness of its face.
void CMultiExposureHDRProcessFlowOpt::AimAtFace(const Burst& burst, FlowTemporaries& temp)
{
    GetReferenceFaceIntensity(temp.m_FaceBox, temp.vWorkFrames[burst.nReference], *this,
                              {bHSVStretch, bDebugDumpEnable}, temp.m_Face.reference, m_bBrightDarkFace);
    m_FaceIntensity = FaceBrightness(temp.m_Face.reference, nFusionWeightSelect);
    HdrPrintf("m_FaceIntensity %i\n", m_FaceIntensity);
}

// Weights on a thread of their own beside ghost detection, then what ghosts change in them.
bool CMultiExposureHDRProcessFlowOpt::WeighExposures(const Burst& burst, FlowTemporaries& temp)
{
    StageThread weightThread([&] {
        m_nTotalLevels = BuildWeight(temp.vWorkFrames, burst.nExposureNum, burst.nReference, *this, *this, *this,
                                     m_ReadyFlags, temp.vWeights);
        return m_nTotalLevels > 0;
    });
    m_GhostFilter.m_bDumpAllowed = bDebugDumpEnable;
    Tic();
    const bool bGhostMap =
        bGhostProcessEnable && m_GhostFilter.DetectGhost(temp.vWorkFrames, temp.vAlignMasks, burst.nExposureNum,
                                                         burst.nReference, *this, m_GhostMap);
    Toc("==== ==== DetectGhost Done");
    if (bGhostMap) ProbeImage("ghost", m_GhostMap);
    Tic();
    Toc("==== ==== BuildWeight Done");  // a marker: the thread is joined behind it
    if (!weightThread.Join()) return false;
    return EmbedGhosts(burst, bGhostMap, temp);
}

// The edge layer takes its weights behind the embedding and before the frames are re-linearised.
bool CMultiExposureHDRProcessFlowOpt::EmbedGhosts(const Burst& burst, bool bGhostMap, FlowTemporaries& temp)
{
    ProbeImage("builtweights", temp.vWeights[0]);
    Tic();
    if (bGhostMap) GiveGhostsTheirExposure(burst, temp);
    bool bDone = temp.m_Level0Weights.CopyDimFrom(temp.vWeights[0]);
    if (bDone && bGhostProcessEnable && bGhostRelinearizeEnable) {
        ReLinearize(temp.vWorkFrames, temp.vWeights[0], nRatio, burst.nExposureNum, *this, bDebugDumpEnable);
        m_nTotalLevels =
            RebuildWeight(temp.vWorkFrames, burst.nExposureNum, burst.nReference, *this, *this, *this, temp.vWeights);
        bDone = m_nTotalLevels > 0;
    }
    Toc("==== ==== GhostEmbeddingIntoWeight Done");
    for (int i = 0; i < kMaxLevels; ++i) ProbeImage("coef", temp.vCoefs[i], i);
    for (int i = 0; i < m_nTotalLevels; ++i) ProbeImage("weights", temp.vWeights[i], i);
    ProbeImage("edgeweights", temp.m_Level0Weights);
    return bDone;
}

// A failure leaves the weights as they then are, and the burst goes on with them. The limited levels stay for later
// bursts, and so does a saturation mask that was switched off.
void CMultiExposureHDRProcessFlowOpt::GiveGhostsTheirExposure(const Burst& burst, FlowTemporaries& temp)
{
    LimitDeghostLevels(m_nTotalLevels, *this, *this);
    CShortImage choice{};
    const ImageScope scope(choice);
    const GhostEmbedding embedding =
        GhostEmbeddingIntoWeight(m_GhostMap, temp.vWorkFrames, burst.nExposureNum, burst.nReference, *this, *this,
                                 *this, *this, bDebugDumpEnable, temp.vWeights, temp.vCoefs, &choice);
    ProbeImage("ghostchoice", choice);
    if (embedding == GhostEmbedding::kWholePicture) bCheckSatuEnable = 0;
}

// A face of too wide a spread has left its mark: its tone is not followed, in this burst and those after it.
bool CMultiExposureHDRProcessFlowOpt::ToneFollowsFace(const FlowTemporaries& temp) const
{
    return bAIMask && int64_t{temp.m_FaceBox.x2} + temp.m_FaceBox.y2 != 0 && !m_bBrightDarkFace;
}

bool CMultiExposureHDRProcessFlowOpt::MapTone(const Burst& burst, FlowTemporaries& temp)
{
    CImage& reference = temp.vWorkFrames[burst.nReference];  // as re-linearisation left it; empty without a face
    const bool bDone = ToneFollowsFace(temp) ? MapFaceTone(reference, temp)
                                             : GlobalStretch(temp.m_Fused, temp.m_SatuMask, bCheckSatuEnable, *this,
                                                             bDebugDumpEnable, *this, temp.m_Tone);
    reference.Release();
    if (!bDone) return false;
    temp.m_Fused.Release();
    ProbeImage("stretched", temp.m_Tone);
    if (!(bAIMask && bHSVTone)) RaiseLocalContrast(temp.m_Tone);
    ProbeImage("tone", temp.m_Tone);
    if (bDebugDumpEnable) SaveBmp(temp.m_Tone, "Dump/BeforeToYUV.bmp", true);
    return true;
}

// The fused face is measured against the black level of the burst before, and before the saturated base is clipped.
bool CMultiExposureHDRProcessFlowOpt::MapFaceTone(const CImage& reference, FlowTemporaries& temp)
{
    const FaceStretchFlags flags = {bCheckSatuEnable, bAddHighFrequency, bDebugDumpEnable};
    GetFusionFaceIntensity(temp.m_FaceBox, temp.m_Fused, m_nLowLevel, *this, {bHSVStretch, bDebugDumpEnable},
                           m_bBrightDarkFace, temp.m_Face.fusion);
    if (bHSVStretch) {
        return HSVStretchTone(temp.m_FaceBox, temp.m_Fused, reference, temp.m_SatuMask, *this, *this, *this, flags,
                              temp.m_Face, *this, temp.m_Tone);
    }
    if (!FaceToneStretch(temp.m_Fused, reference, temp.m_SatuMask, *this, *this, flags, temp.m_Face, *this,
                         temp.m_Tone)) {
        return false;
    }
    return !bHSVTone || CorrectFaceColour(reference, temp);
}

bool CMultiExposureHDRProcessFlowOpt::CorrectFaceColour(const CImage& reference, FlowTemporaries& temp)
{
    const auto Correct = bHSVToneFace ? HSVToneFace : HSVTone;
    return Correct(temp.m_FaceBox, reference, *this, bDebugDumpEnable, temp.m_Tone);
}

void CMultiExposureHDRProcessFlowOpt::MarkFaces(const Burst& burst, FlowTemporaries& temp)
{
    DrawFaceBoxes(temp.m_Tone, temp.m_FaceBox, burst.faces.pFaces, burst.faces.nCount, burst.nFaceSource,
                  bDebugDumpEnable);
}

bool CMultiExposureHDRProcessFlowOpt::UpscaleTone(FlowTemporaries& temp)
{
    Tic();
    BGRToYCbCr(temp.m_Tone, bUVOrder ? 1 : 0);
    Toc("==== ==== BGR2YCbCr");
    return SplitAndUpscale(temp.m_Tone, *this, temp.m_Upscaled);
}

bool CMultiExposureHDRProcessFlowOpt::RestoreEdges(FlowTemporaries& temp, CYuvImage& output)
{
    if (temp.m_Upscaled.nWidth != temp.m_EdgeLayer.nWidth || temp.m_Upscaled.nHeight != temp.m_EdgeLayer.nHeight) {
        return false;
    }
    AddEdge(temp.m_Upscaled, temp.m_EdgeLayer, temp.m_Upscaled);
    output.Swap(temp.m_Upscaled);
    Toc("==== ==== UpScaleImage AddEdge Done");
    ProbeImage("edge", temp.m_EdgeLayer);
    return true;
}

}  // namespace vkr
