#include "fusion/working_frames.h"

#include <algorithm>
#include <atomic>

#include "foundation/colour.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"
#include "primitives/doubled_rows.h"
#include "primitives/gaussian_pyramid.h"
#include "primitives/planar_rows.h"

namespace vkr {

namespace {

// The luma plane at half size, shared by the two halves of the work on one exposure.
bool HalveLuma(const CYuvImage& frame, CImage& halved)
{
    return !frame.Empty() && halved.AllocateGray(frame.nWidth / 2, frame.nHeight / 2) &&
           CGaussianPyramid2::DownScaleImageFast(frame.pY, halved.pData, frame.nWidth, frame.nHeight, 1);
}

// Halved luma beside the chroma bytes as they stand: chroma already has the working resolution.
void JoinChromaRow(const uint8_t* pLuma, const uint8_t* pPairs, uint8_t* pDst, int nWidth)
{
    for (int nBegin = 0; nBegin < nWidth; nBegin += kRunPixels) {
        const int nCount = std::min(kRunPixels, nWidth - nBegin);
        uint8_t vChroma[2][kRunPixels];
        for (int x = 0; x < nCount; ++x) {
            vChroma[0][x] = pPairs[2 * (nBegin + x)];
            vChroma[1][x] = pPairs[2 * (nBegin + x) + 1];
        }
        const uint8_t* const vPlanes[3] = {pLuma + nBegin, vChroma[0], vChroma[1]};
        JoinPixelRow(vPlanes, pDst + 3 * nBegin, nCount);
    }
}

bool MakeWorkingFrame(const CYuvImage& frame, const CImage& halved, int bUVOrder, CImage& work)
{
    if (halved.Empty() || !work.Allocate(halved.nWidth, halved.nHeight)) return false;
    for (int y = 0; y < work.nHeight; ++y) JoinChromaRow(halved.Row(y), frame.RowUV(y), work.Row(y), work.nWidth);
    YCbCrToBGR(work, bUVOrder);
    return true;
}

// The flag is set even where there was no memory: whoever waits for the frame then finds it empty, and goes on.
bool MakeAndAnnounce(const CYuvImage& frame, const CImage& halved, int bUVOrder, int nIndex, ReadyFlags& flags,
                     CImage& work)
{
    const StageTimer timer("==== ==== ==== YCbCr2BGR Done");
    const bool bDone = MakeWorkingFrame(frame, halved, bUVOrder, work);
    flags.SetReady(nIndex);
    HdrPrintf("==================index %d=====================\n", nIndex);
    return bDone;
}

bool MakeDetailLayer(const CYuvImage& frame, const CImage& halved, CShortImage& detail)
{
    DoubledRows doubled;
    if (halved.Empty() || !doubled.Open(halved, false, false, 1)) return false;
    if (!detail.AllocateDim(frame.nWidth, frame.nHeight, 1)) return false;
    DoubledRows::Reader reader;
    reader.Open(doubled, 0);
    for (int y = 0; y < detail.nHeight; ++y) {
        CGaussianPyramid2::SubtractImage(frame.RowY(y), reader.Row(y), detail.Row(y), detail.nWidth, 1, detail.nWidth,
                                         1);
    }
    return true;
}

}  // namespace

// Two work items for each exposure, the working frame and the detail layer: the carry of the colour conversion is
// serial, so whole exposures alone would leave a thread idle where the team does not divide their number.
bool BinarizeFrames(const CYuvImage* vFrames, int nExposureNum, int bUVOrder, ReadyFlags& flags, CImage* vWorkFrames,
                    CShortImage* vDetailLayers)
{
    const int nCount = std::min(nExposureNum, kMaxExposures);
    CImage vHalved[kMaxExposures] = {};
    ImageScope scope(vHalved);
    for (int k = 0; k < nCount; ++k) {
        if (!HalveLuma(vFrames[k], vHalved[k])) vHalved[k].Release();
    }
    std::atomic<bool> bAllDone{true};
    ParallelItems(2 * nCount, [&](int nItem) {
        const int k = nItem % nCount;
        const bool bDone = nItem < nCount ? MakeAndAnnounce(vFrames[k], vHalved[k], bUVOrder, k, flags, vWorkFrames[k])
                                          : MakeDetailLayer(vFrames[k], vHalved[k], vDetailLayers[k]);
        if (!bDone) bAllDone.store(false, std::memory_order_relaxed);
    });
    return bAllDone;
}

}  // namespace vkr
