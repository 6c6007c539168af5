#include <algorithm>

#include "flow/debug_picture.h"
#include "flow/flow_temporaries.h"
#include "flow/multi_exposure_flow.h"
#include "foundation/bmp.h"
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

void DumpFrame(const CYuvImage& frame, int bUVOrder, const char* pPath)
{
    CImage bgr{};
    ImageScope scope(bgr);
    if (FrameToBgr(frame, bUVOrder, bgr)) SaveBmp(bgr, pPath, true);
}

}  // namespace

bool CMultiExposureHDRProcessFlowOpt::ProcessImage(int nExposureNum, int nReference, const HostFaces& faces,
                                                   int nOrientation, int nFaceSource, CYuvImage& output)
{
    Burst burst{m_YuvFrames, nExposureNum, nReference, faces, nOrientation, nFaceSource};
    FlowTemporaries temp;
    Tic();  // closed at the end of a fused burst only
    if (bDebugDumpEnable) DumpExposures(burst);
    const bool bAligned = AlignBurst(burst, temp);
    if (!bAligned || m_nFirstValid + 1 == m_nLastValid) {
        return FinishReferenceOnly(burst.vFrames[burst.nReference], output);
    }
    DropFrames(burst, temp);
    if (!FuseBurst(burst, temp, output)) return false;
    if (bDebugDumpEnable) DumpFrame(output, bUVOrder, "result/Result.bmp");
    if (bDebugDumpEnable && nFaceSource > 0) SaveDebugPicture(output, temp.m_FaceBox);
    Toc("====@@@@@ HDR  Process Done");
    return true;
}

// The reference and its two neighbours, as far as the burst has them.
void CMultiExposureHDRProcessFlowOpt::DumpExposures(const Burst& burst)
{
    const int r = burst.nReference;
    DumpFrame(burst.vFrames[r], bUVOrder, "result/EV0.bmp");
    if (r > 0) DumpFrame(burst.vFrames[r - 1], bUVOrder, "result/EV-.bmp");
    if (r + 1 < burst.nExposureNum) DumpFrame(burst.vFrames[r + 1], bUVOrder, "result/EV+.bmp");
}

bool CMultiExposureHDRProcessFlowOpt::AlignBurst(const Burst& burst, FlowTemporaries& temp)
{
    m_nFirstValid = 0;
    m_nLastValid = burst.nExposureNum;
    Tic();
    const bool bDone = nGlobalAlignEnable
                           ? m_AlignFilter.AlignImages(burst.vFrames, burst.nExposureNum, burst.nReference,
                                                       temp.vAlignMasks, *this, {bDebugDumpEnable, bUVOrder})
                           : FillAlignMasks(burst.vFrames, burst.nExposureNum, burst.nReference, temp.vAlignMasks);
    Toc("==== ==== AlignImages Done");
    for (int k = 0; k < burst.nExposureNum; ++k) {
        ProbeImage("aligned", burst.vFrames[k], k);
        ProbeImage("mask", temp.vAlignMasks[k], k);
    }
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
    m_LocalCurve.m_bDumpAllowed = bDebugDumpEnable;
    if (!m_LocalCurve.ProcessImage(picture)) HdrPrintf("no memory for the local curves, the picture stays as it was\n");
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
