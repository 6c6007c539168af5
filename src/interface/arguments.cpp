#include "interface/arguments.h"

#include "foundation/fixed_point.h"
#include "interface/report.h"

namespace vkr {

namespace {

constexpr int32_t kMinSide = 2;
constexpr int32_t kMaxSide = 16384;

bool IsSide(int32_t n)
{
    return n >= kMinSide && n <= kMaxSide && n % 2 == 0;
}

bool CheckSlot(const CYuvImage* vSlots, int k)
{
    if (vSlots[k].Empty()) {
        Report("vkrHdrRender: no frame was added at index %d\n", k);
        return false;
    }
    if (vSlots[k].nWidth != vSlots[0].nWidth || vSlots[k].nHeight != vSlots[0].nHeight) {
        Report("vkrHdrRender: frame %d is %dx%d, frame 0 is %dx%d\n", k, vSlots[k].nWidth, vSlots[k].nHeight,
               vSlots[0].nWidth, vSlots[0].nHeight);
        return false;
    }
    return true;
}

}  // namespace

bool CheckFrame(const char* pCall, const vkrHdrFrame* pFrame)
{
    if (pFrame == nullptr) {
        Report("%s: the frame is null\n", pCall);
        return false;
    }
    if (pFrame->pPlane[0] == nullptr || pFrame->pPlane[1] == nullptr) {
        Report("%s: pPlane[%d] is null\n", pCall, pFrame->pPlane[0] == nullptr ? 0 : 1);
        return false;
    }
    if (!IsSide(pFrame->nWidth) || !IsSide(pFrame->nHeight)) {
        Report("%s: size %dx%d, both sides must be even and %d .. %d\n", pCall, pFrame->nWidth, pFrame->nHeight,
               kMinSide, kMaxSide);
        return false;
    }
    for (int i = 0; i < 2; ++i) {
        if (pFrame->nPitch[i] < pFrame->nWidth) {
            Report("%s: nPitch[%d] is %d, less than the width %d\n", pCall, i, pFrame->nPitch[i], pFrame->nWidth);
            return false;
        }
    }
    return true;
}

bool CheckBurst(const CYuvImage* vSlots, int32_t nExposureNum, int32_t nReferenceExposure, const vkrHdrFrame* pOut)
{
    if (nExposureNum < 1 || nExposureNum > kMaxExposures) {
        Report("vkrHdrRender: nExposureNum is %d, it must be 1 .. %d\n", nExposureNum, kMaxExposures);
        return false;
    }
    if (nReferenceExposure < 0 || nReferenceExposure >= nExposureNum) {
        Report("vkrHdrRender: nReferenceExposure is %d in a burst of %d\n", nReferenceExposure, nExposureNum);
        return false;
    }
    for (int k = 0; k < nExposureNum; ++k) {
        if (!CheckSlot(vSlots, k)) return false;
    }
    if (!CheckFrame("vkrHdrRender", pOut)) return false;
    if (pOut->nWidth != vSlots[0].nWidth || pOut->nHeight != vSlots[0].nHeight) {
        Report("vkrHdrRender: the output is %dx%d, the frames are %dx%d\n", pOut->nWidth, pOut->nHeight,
               vSlots[0].nWidth, vSlots[0].nHeight);
        return false;
    }
    return true;
}

}  // namespace vkr
