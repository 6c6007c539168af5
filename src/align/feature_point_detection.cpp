#include "align/feature_point_detection.h"

#include <algorithm>
#include <cstddef>

#include "align/feature_response.h"
#include "align/feature_select.h"
#include "foundation/mem_pool.h"
#include "foundation/row_view.h"

namespace vkr {

void CFeaturePointDetection::SetFilterName()
{
    StoreName("CFeaturePointDetection");
}

void CFeaturePointDetection::RegisterParameters()
{
    ADD_PARAM(nPtThre1);
    ADD_PARAM(nPtThre2);
    ADD_PARAM(nThre);
    ADD_PARAM(nRatio);
    ADD_PARAM(nHarris_K);
    ADD_PARAM(nHarrisThre);
    m_fHarrisK = HarrisK();
}

void CFeaturePointDetection::UpdateParameter()
{
    m_fHarrisK = HarrisK();
}

namespace {

// Block of the pool that is given back at scope end.
class PoolBlock {
public:
    explicit PoolBlock(size_t nBytes) : m_pBlock(PoolAlloc(nBytes)) {}
    ~PoolBlock() { PoolFree(m_pBlock); }
    PoolBlock(const PoolBlock&) = delete;
    PoolBlock& operator=(const PoolBlock&) = delete;
    void* Data() const { return m_pBlock; }

private:
    void* m_pBlock;
};

FeatureRect ClipRect(const CImage& level, int x0, int y0, int x1, int y1)
{
    if (level.Empty()) return {0, 0, 0, 0};
    const int nLeft = std::max(x0, 0);
    const int nTop = std::max(y0, 0);
    const int nRight = std::min(x1, static_cast<int>(level.nWidth));
    const int nBottom = std::min(y1, static_cast<int>(level.nHeight));
    if (nLeft >= nRight || nTop >= nBottom) return {0, 0, 0, 0};
    return {nLeft, nTop, nRight - nLeft, nBottom - nTop};
}

}  // namespace

bool CFeaturePointDetectionOpt::Detect(const CImage& level, FeaturePoint* pFeatures, int& nCount, int nCapacity, int x0,
                                       int y0, int x1, int y1) const
{
    nCount = 0;
    const FeatureRect rect = ClipRect(level, x0, y0, x1, y1);
    if (rect.nWidth == 0) return false;

    const size_t nWidth = static_cast<size_t>(rect.nWidth);
    const PoolBlock block(nWidth * static_cast<size_t>(rect.nHeight) * sizeof(float) + 128);
    if (block.Data() == nullptr) return false;
    const RowView<float> map{static_cast<float*>(block.Data()), nWidth, rect.nHeight};

    const ResponseParams params{nPtThre1, nPtThre2, nThre, nRatio, nHarrisThre, HarrisK()};
    if (!BuildResponseMap(level, rect, params, map)) return false;
    if (!CollectMaxima(map, rect.nWidth, pFeatures, nCount, nCapacity)) return false;
    SortByResponse(pFeatures, nCount);
    for (int i = 0; i < nCount; ++i) {
        pFeatures[i].x += rect.nX;
        pFeatures[i].y += rect.nY;
    }
    return true;
}

}  // namespace vkr
