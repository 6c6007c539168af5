#include "second_attempt/align_attempt.h"

#include <algorithm>

#include "foundation/mem_pool.h"
#include "library/align_report.h"
#include "pictures/library_pictures.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// The burst as the library's pictures, which it brings into place, for one scope.
class LibraryBurst {
public:
    explicit LibraryBurst(const std::vector<Frame>& vFrames) : m_nFrames(static_cast<int>(vFrames.size()))
    {
        PoolInit(0);
        m_bComplete = true;
        for (size_t k = 0; k < vFrames.size(); ++k) m_bComplete = m_bComplete && Copy(vFrames[k], m_vFrames[k]);
    }
    ~LibraryBurst()
    {
        for (CYuvImage& frame : m_vFrames) frame.Release();
        for (CImage& mask : m_vMasks) mask.Release();
        PoolRelease();
    }
    LibraryBurst(const LibraryBurst&) = delete;
    LibraryBurst& operator=(const LibraryBurst&) = delete;

    bool Align(int nReference, CMultipleImagesAlignFilterOpt& filter)
    {
        ValidRange range{0, m_nFrames};
        return m_bComplete && filter.AlignImages(m_vFrames, m_nFrames, nReference, m_vMasks, range);
    }
    const CYuvImage& Picture(size_t k) const { return m_vFrames[k]; }

private:
    static bool Copy(const Frame& frame, CYuvImage& image)
    {
        if (!image.Allocate(frame.nWidth, frame.nHeight)) return false;
        std::copy(frame.vY.begin(), frame.vY.end(), image.pY);
        std::copy(frame.vUV.begin(), frame.vUV.end(), image.pUV);
        return true;
    }

    int m_nFrames;
    bool m_bComplete = false;
    CYuvImage m_vFrames[kMaxExposures] = {};
    CImage m_vMasks[kMaxExposures] = {};
};

}  // namespace

AlignAttempt AlignFrames(const std::vector<Frame>& vFrames, int nReference, CMultipleImagesAlignFilterOpt& filter)
{
    PairReports reports;
    const StageListeners listeners({&reports});
    LibraryBurst burst(vFrames);
    if (!burst.Align(nReference, filter)) throw BurstError("there is no memory to align the burst");
    listeners.Check();
    AlignAttempt attempt;
    attempt.vPairs = reports.Pairs();
    for (size_t k = 0; k < vFrames.size(); ++k)
        attempt.vFrames.push_back(FrameOf(burst.Picture(k), vFrames[k].bCrFirst));
    return attempt;
}

}  // namespace vkr::tool
