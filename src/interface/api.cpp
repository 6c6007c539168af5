#include <exception>
#include <mutex>
#include <new>
#include <vector>

#include "flow/stage_thread.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/timing.h"
#include "interface/arguments.h"
#include "interface/engine_lifecycle.h"
#include "interface/logo.h"
#include "interface/plane_copy.h"
#include "interface/report.h"
#include "interface/version.h"
#include "vkrHdr.h"

namespace vkr {

namespace {

// The host's list, copied; null and an empty list are no face.
std::vector<FaceBox> CopyFaces(const vSystemFaces* pFaces)
{
    std::vector<FaceBox> vFaces;
    if (pFaces == nullptr || pFaces->pBegin == nullptr) return vFaces;
    for (const vkrHdrRect* p = pFaces->pBegin; p < pFaces->pEnd; ++p) {
        vFaces.push_back(FaceBox{p->x1, p->y1, p->x2, p->y2});
    }
    return vFaces;
}

bool Render(int32_t nExposureNum, int32_t nReferenceExposure, int32_t nOrientation, int32_t nFaceSource,
            const std::vector<FaceBox>& vFaces, CYuvImage& picture, vkrHdrFrame* pOut)
{
    CMultiExposureHDRProcessFlowOpt* pEngine = gVKRAlgoPool;
    if (pEngine == nullptr) {
        Report("vkrHdrRender: there is no engine, call vkrHdrInit first\n");
        return false;
    }
    if (!CheckBurst(pEngine->m_YuvFrames, nExposureNum, nReferenceExposure, pOut)) return false;
    Report("m_nExposureNum =%d,m_nReferenceExposure=%d\n", nExposureNum, nReferenceExposure);

    GoalTimer timer("HDR Process Time");
    const HostFaces faces{vFaces.data(), static_cast<int>(vFaces.size())};
    if (!pEngine->ProcessImage(nExposureNum, nReferenceExposure, faces, nOrientation, nFaceSource, picture)) {
        HdrLog("vkrHdrRender F");
        if (pEngine->IsTooSmall(pOut->nWidth, pOut->nHeight)) {
            HdrPrintf("vkrHdrRender: a picture of %dx%d is too small to be fused\n", pOut->nWidth, pOut->nHeight);
        } else {
            HdrPrintf("vkrHdrRender: no memory for a burst of %d frames of %dx%d\n", nExposureNum, pOut->nWidth,
                      pOut->nHeight);
        }
        return false;
    }
    timer.Reached();
    if (pEngine->bLogoEnable) BlendLogo(picture);
    if (!CopyFrameOut(picture, *pOut)) {
        Report("vkrHdrRender: the result is %dx%d, the output is %dx%d\n", picture.nWidth, picture.nHeight,
               pOut->nWidth, pOut->nHeight);
        return false;
    }
    HdrLog("vkrHdrRender X");
    return true;
}

bool AddFrame(uint32_t nIndex, const vkrHdrFrame* pFrame)
{
    CMultiExposureHDRProcessFlowOpt* pEngine = gVKRAlgoPool;
    if (pEngine == nullptr) {
        Report("vkrHdrAddFrame: there is no engine, call vkrHdrInit first\n");
        return false;
    }
    if (nIndex >= static_cast<uint32_t>(kMaxExposures)) {
        Report("vkrHdrAddFrame: nIndex is %u, the slots are 0 .. %d\n", nIndex, kMaxExposures - 1);
        return false;
    }
    if (pFrame != nullptr && (pFrame->nFormat < 0 || pFrame->nFormat > 1)) {
        Report("unsupported image format %d\n", pFrame->nFormat);
        return false;
    }
    if (!CheckFrame("vkrHdrAddFrame", pFrame)) return false;
    if (!CopyFrameIn(*pFrame, pEngine->m_YuvFrames[nIndex])) {
        Report("vkrHdrAddFrame: no memory for a frame of %dx%d\n", pFrame->nWidth, pFrame->nHeight);
        return false;
    }
    HdrPrintf("%d==============\n", pEngine->bUVOrder);
    HdrLog("vkrHdrAddFrame RGB done");
    return true;
}

// fn under the engine's lock. No exception crosses the C border: scratch of the standard library that finds no memory,
// and a thread that can not be started, end the call.
template <class Fn>
bool RunLocked(const char* pCall, const Fn& fn)
{
    try {
        const std::lock_guard<std::mutex> lock(g_EngineMutex);
        return fn();
    } catch (const std::bad_alloc&) {
        Report("%s: there is not enough memory\n", pCall);
    } catch (const std::exception& error) {
        Report("%s: %s\n", pCall, error.what());
    } catch (...) {
        Report("%s: an exception of no known kind\n", pCall);
    }
    return false;
}

// In a forked process, see ForkState, the call runs on a thread of its own.
template <class Fn>
int32_t Guarded(const char* pCall, const Fn& fn)
{
    switch (ReadForkState()) {
        case ForkState::kNone:
            return RunLocked(pCall, fn) ? 0 : -1;
        case ForkState::kChild:
            try {
                return StageThread([&] { return RunLocked(pCall, fn); }).Join() ? 0 : -1;
            } catch (...) {
                Report("%s: no thread can be started\n", pCall);
                return -1;
            }
        case ForkState::kChildOfCall:
            break;
    }
    Report("%s: this process was forked while another thread was inside a call, and can not use the library\n", pCall);
    return -1;
}

}  // namespace

}  // namespace vkr

int32_t vkrHdrInit(vkrHdrInitParam param)
{
    vkr::HdrLog("vkrHdrInit");
    if (param.nMode != 0) {
        vkr::Report("vkrHdrInit: nMode is %d, it must be 0\n", param.nMode);
        return -1;
    }
    if (param.pParamFilePath == nullptr) {
        vkr::Report("vkrHdrInit: pParamFilePath is null\n");
        return -1;
    }
    return vkr::Guarded("vkrHdrInit", [&] { return vkr::MakeEngine(param.pParamFilePath); });
}

int32_t vkrHdrAddFrame(uint32_t nIndex, const vkrHdrFrame* pFrame)
{
    vkr::HdrLog("vkrHdrAddFrame");
    return vkr::Guarded("vkrHdrAddFrame", [&] { return vkr::AddFrame(nIndex, pFrame); });
}

int32_t vkrHdrRender(int32_t nExposureNum, int32_t nReferenceExposure, int32_t nOrientation, int32_t nFaceSource,
                     const vSystemFaces* pFaces, vkrHdrFrame* pOut)
{
    vkr::HdrLog("vkrHdrRender");
    return vkr::Guarded("vkrHdrRender", [&] {
        vkr::CYuvImage picture{};
        vkr::ImageScope<vkr::CYuvImage> scope(picture);
        const std::vector<vkr::FaceBox> vFaces = vkr::CopyFaces(pFaces);
        return vkr::Render(nExposureNum, nReferenceExposure, nOrientation, nFaceSource, vFaces, picture, pOut);
    });
}

int32_t vkrHdrUninit(void)
{
    vkr::Guarded("vkrHdrUninit", [] {
        vkr::EndEngine();
        return true;
    });
    return 0;
}

const vkrHdrVersion* vkrHdrGetVersion(void)
{
    char szConfigVersion[65];
    const bool bEngine = vkr::ReadConfigVersion(szConfigVersion);
    if (bEngine) vkr::Report("cfg_version:%s\n", szConfigVersion);
    return vkr::FillVersion(bEngine ? szConfigVersion : nullptr);
}

int32_t vkrHdrAdvancedFeature(void)
{
    return 0;
}
