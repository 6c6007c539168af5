#pragma once

#include <algorithm>

#include "align/multiple_images_align_filter.h"
#include "face/face_box.h"
#include "face/face_params.h"
#include "flow/flow_params.h"
#include "foundation/image.h"
#include "foundation/ready_flags.h"
#include "foundation/stage_dumps.h"
#include "fusion/fusion_params.h"
#include "ghosts/ghost_embed_params.h"
#include "ghosts/ghost_process_filter.h"
#include "ghosts/relinearize.h"
#include "local_curve/local_auto_curve_filter.h"
#include "parameters/filter.h"
#include "primitives/pyramid_levels.h"
#include "tone/face_tone_params.h"
#include "tone/tone_params.h"
#include "weights/weight_params.h"

namespace vkr {

struct FlowTemporaries;
class StageThread;

// Parameters and members of the engine. The records of parameters are bases, so that the one table of
// RegisterParameters reaches them all and a stage takes just its own.
class CMultiExposureHDRProcessFlow : public CMultiFilterProcessFlow,
                                     public FlowParams,
                                     public PyramidParams,
                                     public WeightParams,
                                     public FusionParams,
                                     public GhostEmbedParams,
                                     public FaceParams,
                                     public ToneParams,
                                     public FaceToneParams,
                                     public FaceAim,
                                     public StretchLevels,
                                     public DisplayCurve,
                                     public ValidRange {
public:
    CMultiExposureHDRProcessFlow();
    ~CMultiExposureHDRProcessFlow() override;

    void SetFilterName() override;
    void RegisterFilters() override;
    void RegisterParameters() override;
    virtual const char* GetConfigVersion() const { return m_szCfgVersion; }

    CMultipleImagesAlignFilterOpt m_AlignFilter;
    CGhostProcessFilter m_GhostFilter;
    CLocalAutoCurveFilter m_LocalCurve;
    char m_szCfgVersion[65] = "0.0.0.0";

    // Kept between bursts, owned by the engine.
    CImage m_GhostMap{};
    CYuvImage m_YuvFrames[kMaxExposures] = {};

    int32_t m_nTotalLevels = 0;     // levels of the weight pyramid
    int32_t m_bBrightDarkFace = 0;  // set by the first measurement of a face
};

// The engine: one a process, made by vkrHdrInit. ProcessImage runs on the thread of vkrHdrRender, under its mutex.
class CMultiExposureHDRProcessFlowOpt : public CMultiExposureHDRProcessFlow {
public:
    // Whether a burst of frames of that size has no second pyramid level to fuse.
    bool IsTooSmall(int nWidth, int nHeight) const { return std::min(nWidth, nHeight) / 2 <= 1 << nTopLevel; }

    // One burst: frames 0 .. nExposureNum - 1 of m_YuvFrames, all filled and of one size, into output. False, output
    // empty or undefined, when there was no memory or the burst is too small to be fused.
    bool ProcessImage(int nExposureNum, int nReference, const HostFaces& faces, int nOrientation, int nFaceSource,
                      CYuvImage& output);

private:
    // What is left of a burst once alignment has decided which frames can be used.
    struct Burst {
        CYuvImage* vFrames;
        int nExposureNum, nReference;
        const HostFaces& faces;
        int nOrientation, nFaceSource;
    };

    bool AlignBurst(const Burst& burst, FlowTemporaries& temp);
    void DropFrames(Burst& burst, FlowTemporaries& temp);
    void DropEnd(const Burst& burst, FlowTemporaries& temp, int nFirst, int nEnd);
    void RaiseLocalContrast(CImage& picture);
    bool FinishReferenceOnly(const CYuvImage& frame, CYuvImage& output);

    // The stages, each from what those before it left in temp.
    bool FuseBurst(const Burst& burst, FlowTemporaries& temp, CYuvImage& output);
    bool MakeWorkingFrames(const Burst& burst, FlowTemporaries& temp);
    bool MarkSaturation(FlowTemporaries& temp);
    void FindFace(const Burst& burst, FlowTemporaries& temp);
    void AimAtFace(const Burst& burst, FlowTemporaries& temp);
    bool WeighExposures(const Burst& burst, FlowTemporaries& temp);
    void FindGhosts(const Burst& burst, FlowTemporaries& temp);
    bool EmbedGhosts(const Burst& burst, FlowTemporaries& temp);
    void GiveGhostsTheirExposure(const Burst& burst, FlowTemporaries& temp);
    bool MakeFramesAgree(const Burst& burst, FlowTemporaries& temp);
    bool FuseExposures(const Burst& burst, FlowTemporaries& temp);
    bool ToneFollowsFace(const FlowTemporaries& temp) const;
    bool MapTone(const Burst& burst, FlowTemporaries& temp);
    bool MapFaceTone(const CImage& reference, FlowTemporaries& temp);
    bool UpscaleTone(FlowTemporaries& temp);
    bool RestoreEdges(StageThread& edgeThread, FlowTemporaries& temp, CYuvImage& output);

    StageDumps Dumps() const { return {bDebugDumpEnable, bUVOrder}; }

    // The engine by the part that a stage is given.
    const PyramidParams& ForPyramids() const { return *this; }
    const WeightParams& ForWeights() const { return *this; }
    const FaceAim& Aim() const { return *this; }
    const FaceParams& ForFaces() const { return *this; }
    GhostEmbedParams& ForEmbedding() { return *this; }
    const DisplayCurve& Curve() const { return *this; }
    FusionParams& ForFusion() { return *this; }
    const ToneParams& ForTone() const { return *this; }
    const FaceToneParams& ForFaceTone() const { return *this; }
    StretchLevels& Levels() { return *this; }
    ValidRange& Valid() { return *this; }

    ReadyFlags m_ReadyFlags;
};

}  // namespace vkr
