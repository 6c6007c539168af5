#include <algorithm>

#include "flow/debug_picture.h"
#include "flow/flow_temporaries.h"
#include "flow/multi_exposure_flow.h"
#include "foundation/colour.h"
#include "foundation/log.h"
#include "foundation/stage_probe.h"
#include "foundation/timing.h"
#include "foundation/yuv_convert.h"

namespace vkr {

namespace {

// A frame as B, G, R at full size. False when there was no memory.
bool FrameToBgr(const CYuvImage& frame, int bUVOrder, CImage& bgr)
{
    if (!ConvertYuvToImage(frame, bgr, 0)) return false;
    YCbCrToBGR(bgr, bUVOrder);
    return true;
}

// The reference and its two neighbours, as far as the burst has them.
void DumpExposures(const StageDumps& dumps, const CYuvImage* vFrames, int nExposureNum, int nReference)
{
    dumps.Save(vFrames[nReference], "result/EV0.bmp");
    if (nReference > 0) dumps.Save(vFrames[nReference - 1], "result/EV-.bmp");
    if (nReference + 1 < nExposureNum) dumps.Save(vFrames[nReference + 1], "result/EV+.bmp");
}

}  // namespace

bool CMultiExposureHDRProcessFlowOpt::ProcessImage(int nExposureNum, int nReference, const HostFaces& faces,
                                                   int nOrientation, int nFaceSource, CYuvImage& output)
{
    Burst burst{m_YuvFrames, nExposureNum, nReference, faces, nOrientation, nFaceSource};
    FlowTemporaries temp;
    GoalTimer timer("====@@@@@ HDR  Process Done");  // of a fused burst only
    DumpExposures(Dumps(), burst.vFrames, nExposureNum, nReference);
    const bool bAligned = AlignBurst(burst, temp);
    if (!bAligned || m_nFirstValid + 1 == m_nLastValid) {
        return FinishReferenceOnly(burst.vFrames[burst.nReference], output);
    }
    DropFrames(burst, temp);
    if (!FuseBurst(burst, temp, output)) return false;
    Dumps().Save(output, "result/Result.bmp");
    if (bDebugDumpEnable && nFaceSource > 0) SaveDebugPicture(output, temp.m_FaceBox);
    timer.Reached();
    return true;
}

bool CMultiExposureHDRProcessFlowOpt::AlignBurst(const Burst& burst, FlowTemporaries& temp)
{
    m_nFirstValid = 0;
    m_nLastValid = burst.nExposureNum;
    const bool bDone = TimedStage("==== ==== AlignImages Done", [&] {
        return nGlobalAlignEnable
                   ? m_AlignFilter.AlignImages(burst.vFrames, burst.nExposureNum, burst.nReference, temp.vAlignMasks,
                                               Valid(), Dumps())
                   : FillAlignMasks(burst.vFrames, burst.nExposureNum, burst.nReference, temp.vAlignMasks);
    });
    ProbeImages("aligned", burst.vFrames, burst.nExposureNum);
    ProbeImages("mask", temp.vAlignMasks, burst.nExposureNum);
    return bDone;
}

// Leaves the frames that alignment found usable, whichever end, or both, lost some; a line for each. Dropped slots are
// given back and hold no frame until the host fills them again; the brightness targets of a burst with dropped frames
// stay in force for the bursts after it.
void CMultiExposureHDRProcessFlowOpt::DropFrames(Burst& burst, FlowTemporaries& temp)
{
    if (m_nFirstValid <= 0 && m_nLastValid >= burst.nExposureNum) return;
    DropEnd(burst, temp, 0, m_nFirstValid);
    DropEnd(burst, temp, m_nLastValid, burst.nExposureNum);
    for (int k = m_nFirstValid; m_nFirstValid > 0 && k < m_nLastValid; ++k) {
        temp.vAlignMasks[k - m_nFirstValid].Swap(temp.vAlignMasks[k]);
    }
    burst.vFrames += m_nFirstValid;
    burst.nReference -= m_nFirstValid;
    burst.nExposureNum = m_nLastValid - m_nFirstValid;
    std::copy_n(nGoodBrightnessTargetDropFailure, burst.nExposureNum, nGoodBrightnessTarget);
}

// Frames nFirst .. nEnd - 1, if there are any.
void CMultiExposureHDRProcessFlowOpt::DropEnd(const Burst& burst, FlowTemporaries& temp, int nFirst, int nEnd)
{
    if (nFirst >= nEnd) return;
    if (bDebugDumpEnable) {
        HdrPrintf("!!!!!!!!Using Image %ith to %ith Only!!!!!!!!!!!\n", m_nFirstValid + 1, m_nLastValid);
    }
    for (int k = nFirst; k < nEnd; ++k) {
        burst.vFrames[k].Release();
        temp.vAlignMasks[k].Release();
    }
}

// Without memory for its curves the picture goes on as it is.
void CMultiExposureHDRProcessFlowOpt::RaiseLocalContrast(CImage& picture)
{
    if (!bContrastEnable) return;
    if (!m_LocalCurve.ProcessImage(picture, Dumps()))
        HdrPrintf("no memory for the local curves, the picture stays as it was\n");
}

// A burst that can not be fused: the reference at full size with the local curve on it.
bool CMultiExposureHDRProcessFlowOpt::FinishReferenceOnly(const CYuvImage& frame, CYuvImage& output)
{
    CImage picture{};
    ImageScope scope(picture);
    if (!FrameToBgr(frame, bUVOrder, picture)) return false;
    RaiseLocalContrast(picture);
    BGRToYCbCr(picture, bUVOrder ? 1 : 0);
    return ConvertImageToYuv(output, picture);
}

}  // namespace vkr
