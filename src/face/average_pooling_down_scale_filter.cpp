#include "face/average_pooling_down_scale_filter.h"

#include <cstring>

#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

constexpr int kBlockPixels = 16;  // source pixels whose three components are treated alike

// nPixels of dst from two rows of src; component 0 by weights 1, 1, 0, 2 where bTail is set.
template <bool bTail>
void HalveRow(const uint8_t* pTop, const uint8_t* pBottom, uint8_t* pDst, int nPixels)
{
    for (int x = 0; x < nPixels; ++x, pTop += 6, pBottom += 6, pDst += 3) {
        pDst[0] = static_cast<uint8_t>((pTop[0] + pTop[3] + (bTail ? pBottom[3] : pBottom[0]) + pBottom[3]) >> 2);
        pDst[1] = static_cast<uint8_t>((pTop[1] + pTop[4] + pBottom[1] + pBottom[4]) >> 2);
        pDst[2] = static_cast<uint8_t>((pTop[2] + pTop[5] + pBottom[2] + pBottom[5]) >> 2);
    }
}

bool Halve(const CImage& src, CImage& dst)
{
    if (!dst.Allocate(src.nWidth / 2, src.nHeight / 2)) return false;
    const int nEven = src.nWidth / kBlockPixels * kBlockPixels / 2, nTail = dst.nWidth - nEven;
    ParallelRows(dst.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const uint8_t *const pTop = src.Row(2 * y), *const pBottom = src.Row(2 * y + 1);
            HalveRow<false>(pTop, pBottom, dst.Row(y), nEven);
            HalveRow<true>(pTop + 6 * nEven, pBottom + 6 * nEven, dst.Row(y) + 3 * nEven, nTail);
        }
    });
    return true;
}

// Sides rounded up, without the sum that might not fit 32 bits.
int Blocks(int nSamples, int nSize)
{
    return (nSamples - 1) / nSize + 1;
}

bool AddShares(const CImage& src, CImage& dst, int nSize)
{
    if (!dst.Allocate(Blocks(src.nWidth, nSize), Blocks(src.nHeight, nSize))) return false;
    std::memset(dst.pData, 0, dst.Samples());
    const int64_t nArea = int64_t{nSize} * nSize;
    for (int y = 0; y < src.nHeight; ++y) {
        const uint8_t* pSrc = src.Row(y);
        uint8_t* const pDst = dst.Row(y / nSize);
        for (int i = 0; i < src.RowSamples(); ++i) {
            uint8_t& sum = pDst[i / 3 / nSize * 3 + i % 3];
            sum = static_cast<uint8_t>(sum + pSrc[i] / nArea);
        }
    }
    return true;
}

}  // namespace

void CAveragePoolingDownScaleFilter::SetFilterName()
{
    StoreName("AveragePoolingDownScaleFilter");
}

void CAveragePoolingDownScaleFilter::RegisterParameters()
{
    ADD_PARAM(nDownScaleSize);
}

bool CAveragePoolingDownScaleFilter::ApplyDownScale(const CImage& src, CImage& dst, int nSize)
{
    if (src.Empty() || src.nDim != 3 || nSize < 1) return false;
    const bool bHalve = nSize == 2 && src.nWidth % 2 == 0 && src.nHeight % 2 == 0;
    return bHalve ? Halve(src, dst) : AddShares(src, dst, nSize);
}

}  // namespace vkr
