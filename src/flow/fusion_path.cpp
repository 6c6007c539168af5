#include "face/face_intensity.h"
#include "face/face_marks.h"
#include "face/face_search.h"
#include "flow/flow_temporaries.h"
#include "flow/multi_exposure_flow.h"
#include "flow/stage_thread.h"
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
    if (!WeighExposures(burst, temp) || !EmbedGhosts(burst, temp)) return false;
    StageThread edgeThread([&] {
        return FuseEdgeLayers(temp.m_Level0Weights, temp.vDetailLayers, burst.nExposureNum, ForPyramids(),
                              temp.m_EdgeLayer);
    });
    if (!FuseExposures(burst, temp) || !MapTone(burst, temp)) return false;
    DrawFaceBoxes(temp.m_Tone, temp.m_FaceBox, burst.faces, burst.nFaceSource, Dumps());
    return UpscaleTone(temp) && RestoreEdges(edgeThread, temp, output);
}

bool CMultiExposureHDRProcessFlowOpt::MakeWorkingFrames(const Burst& burst, FlowTemporaries& temp)
{
    m_ReadyFlags.Reset();
    m_FaceIntensity = nGoodBrightnessTarget[burst.nReference];
    const bool bDone = TimedStage("==== ==== Binarize Done", [&] {
        return BinarizeFrames(burst.vFrames, burst.nExposureNum, bUVOrder, m_ReadyFlags, temp.vWorkFrames,
                              temp.vDetailLayers);
    });
    ProbeImages("work", temp.vWorkFrames, burst.nExposureNum);
    return bDone;
}

bool CMultiExposureHDRProcessFlowOpt::MarkSaturation(FlowTemporaries& temp)
{
    const bool bDone = TimedStage("==== ==== GenerateSatuMask Done", [&] {
        return !bCheckSatuEnable || GenerateSatuMask(temp.vWorkFrames[0], nSaturateThre, temp.m_SatuMask);
    });
    Dumps().Save(temp.m_SatuMask, "Dump/SatuMask.bmp");
    ProbeImage("satumask", temp.m_SatuMask);
    return bDone;
}

// A burst without a face switches the search off for the bursts after it.
void CMultiExposureHDRProcessFlowOpt::FindFace(const Burst& burst, FlowTemporaries& temp)
{
    const StageTimer timer("====AI1");
    if (!bAIMask) return;
    temp.m_FaceBox = SearchFace(temp.vWorkFrames[burst.nReference], burst.nOrientation, burst.nFaceSource, burst.faces,
                                ForFaces(), Dumps());
    if (temp.m_FaceBox.x2 == 0 && temp.m_FaceBox.y2 == 0) {
        bAIMask = 0;
    } else {
        AimAtFace(burst, temp);
    }
}

// The weights of the reference exposure aim at the brightness of its face.
void CMultiExposureHDRProcessFlowOpt::AimAtFace(const Burst& burst, FlowTemporaries& temp)
{
    GetReferenceFaceIntensity(temp.m_FaceBox, temp.vWorkFrames[burst.nReference], ForFaces(), {bHSVStretch, Dumps()},
                              temp.m_Face.reference, m_bBrightDarkFace);
    m_FaceIntensity = FaceBrightness(temp.m_Face.reference, nFusionWeightSelect);
    HdrPrintf("m_FaceIntensity %i\n", m_FaceIntensity);
}

// On a thread of their own, beside ghost detection.
bool CMultiExposureHDRProcessFlowOpt::WeighExposures(const Burst& burst, FlowTemporaries& temp)
{
    StageThread weightThread([&] {
        m_nTotalLevels = BuildWeight({temp.vWorkFrames, burst.nExposureNum, burst.nReference}, ForWeights(), Aim(),
                                     ForPyramids(), m_ReadyFlags, temp.vWeights);
        return m_nTotalLevels > 0;
    });
    FindGhosts(burst, temp);
    // A marker, about 0 ms: it tells when the flow began to wait for the thread, not what the weights took.
    TimedStage("==== ==== BuildWeight Done", [] {});
    if (!weightThread.Join()) return false;
    ProbeImage("builtweights", temp.vWeights[0]);
    return true;
}

void CMultiExposureHDRProcessFlowOpt::FindGhosts(const Burst& burst, FlowTemporaries& temp)
{
    temp.bGhosts = TimedStage("==== ==== DetectGhost Done", [&] {
        return bGhostProcessEnable &&
               m_GhostFilter.DetectGhost({temp.vWorkFrames, burst.nExposureNum, burst.nReference}, temp.vAlignMasks,
                                         ForPyramids(), Dumps(), m_GhostMap);
    });
    if (temp.bGhosts) ProbeImage("ghost", m_GhostMap);
}

// The edge layer takes its weights behind the embedding and before the frames are re-linearised.
bool CMultiExposureHDRProcessFlowOpt::EmbedGhosts(const Burst& burst, FlowTemporaries& temp)
{
    const bool bDone = TimedStage("==== ==== GhostEmbeddingIntoWeight Done", [&] {
        if (temp.bGhosts) GiveGhostsTheirExposure(burst, temp);
        if (!temp.m_Level0Weights.CopyDimFrom(temp.vWeights[0])) return false;
        return !bGhostProcessEnable || !bGhostRelinearizeEnable || MakeFramesAgree(burst, temp);
    });
    ProbeImages("coef", temp.vCoefs, kMaxLevels);
    ProbeImages("weights", temp.vWeights, m_nTotalLevels);
    ProbeImage("edgeweights", temp.m_Level0Weights);
    return bDone;
}

// A failure leaves the weights as they then are, and the burst goes on with them. The limited levels stay for later
// bursts, and so does a saturation mask that was switched off.
void CMultiExposureHDRProcessFlowOpt::GiveGhostsTheirExposure(const Burst& burst, FlowTemporaries& temp)
{
    LimitDeghostLevels(m_nTotalLevels, ForEmbedding(), ForFusion());
    CShortImage choice{};
    const ImageScope scope(choice);
    const GhostEmbedding embedding = GhostEmbeddingIntoWeight(
        m_GhostMap, {temp.vWorkFrames, burst.nExposureNum, burst.nReference},
        {ForEmbedding(), ForFusion(), ForPyramids(), Curve()}, Dumps(), temp.vWeights, temp.vCoefs, &choice);
    ProbeImage("ghostchoice", choice);
    if (embedding == GhostEmbedding::kWholePicture) bCheckSatuEnable = 0;
}

bool CMultiExposureHDRProcessFlowOpt::MakeFramesAgree(const Burst& burst, FlowTemporaries& temp)
{
    ReLinearize(temp.vWorkFrames, temp.vWeights[0], nRatio, burst.nExposureNum, Curve(), Dumps());
    m_nTotalLevels = RebuildWeight({temp.vWorkFrames, burst.nExposureNum, burst.nReference}, ForWeights(), Aim(),
                                   ForPyramids(), temp.vWeights);
    return m_nTotalLevels > 0;
}

// Behind it only the reference is still of use, and that to the tone of a face alone.
bool CMultiExposureHDRProcessFlowOpt::FuseExposures(const Burst& burst, FlowTemporaries& temp)
{
    const bool bFused = TimedStage("==== ==== PyramidFusion Done", [&] {
        return PyramidFusion({temp.vWorkFrames, burst.nExposureNum, temp.vWeights, temp.vCoefs}, ForFusion(),
                             ForPyramids(), Dumps(), temp.m_Fused);
    });
    ProbeImage("fused", temp.m_Fused);
    for (CImage& frame : temp.vWorkFrames) {
        const bool bToneReadsIt = ToneFollowsFace(temp) && &frame == &temp.vWorkFrames[burst.nReference];
        if (!bToneReadsIt) frame.Release();
    }
    for (CImage& level : temp.vWeights) level.Release();
    return bFused && !temp.m_Fused.Empty();
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
                                             : GlobalStretch(temp.m_Fused, temp.m_SatuMask, bCheckSatuEnable, ForTone(),
                                                             Dumps(), Levels(), temp.m_Tone);
    reference.Release();
    if (!bDone) return false;
    temp.m_Fused.Release();
    ProbeImage("stretched", temp.m_Tone);
    if (!(bAIMask && bHSVTone)) RaiseLocalContrast(temp.m_Tone);
    ProbeImage("tone", temp.m_Tone);
    Dumps().Save(temp.m_Tone, "Dump/BeforeToYUV.bmp");
    return true;
}

// The fused face is measured against the black level of the burst before, and before the saturated base is clipped.
bool CMultiExposureHDRProcessFlowOpt::MapFaceTone(const CImage& reference, FlowTemporaries& temp)
{
    GetFusionFaceIntensity(temp.m_FaceBox, temp.m_Fused, m_nLowLevel, ForFaces(), {bHSVStretch, Dumps()},
                           m_bBrightDarkFace, temp.m_Face.fusion);
    const FusedFace face{temp.m_FaceBox, temp.m_Fused, reference, temp.m_SatuMask};
    const FaceStretch stretch{ForTone(), ForFaces(), ForFaceTone(), bCheckSatuEnable, bAddHighFrequency, Dumps()};
    if (bHSVStretch) return HSVStretchTone(face, stretch, temp.m_Face, Levels(), temp.m_Tone);
    if (!FaceToneStretch(face, stretch, temp.m_Face, Levels(), temp.m_Tone)) return false;
    const auto CorrectColour = bHSVToneFace ? HSVToneFace : HSVTone;
    return !bHSVTone || CorrectColour(temp.m_FaceBox, reference, ForFaceTone(), Dumps(), temp.m_Tone);
}

bool CMultiExposureHDRProcessFlowOpt::UpscaleTone(FlowTemporaries& temp)
{
    TimedStage("==== ==== BGR2YCbCr", [&] { BGRToYCbCr(temp.m_Tone, bUVOrder ? 1 : 0); });
    return SplitAndUpscale(temp.m_Tone, ForPyramids(), temp.m_Upscaled);
}

bool CMultiExposureHDRProcessFlowOpt::RestoreEdges(StageThread& edgeThread, FlowTemporaries& temp, CYuvImage& output)
{
    GoalTimer timer("==== ==== UpScaleImage AddEdge Done");
    if (!edgeThread.Join()) return false;
    if (temp.m_Upscaled.nWidth != temp.m_EdgeLayer.nWidth || temp.m_Upscaled.nHeight != temp.m_EdgeLayer.nHeight) {
        return false;
    }
    AddEdge(temp.m_Upscaled, temp.m_EdgeLayer, temp.m_Upscaled);
    output.Swap(temp.m_Upscaled);
    timer.Reached();
    ProbeImage("edge", temp.m_EdgeLayer);
    return true;
}

}  // namespace vkr
