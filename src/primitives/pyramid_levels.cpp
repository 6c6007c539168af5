#include "primitives/pyramid_levels.h"

#include <algorithm>
#include <cassert>

#include "foundation/image_scope.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

namespace {

bool HalveEven(const CImage& src, CImage& dst, bool bFilter, bool bDither)
{
    if (!dst.AllocateDim(src.nWidth >> 1, src.nHeight >> 1, src.nDim)) return false;
    if (bFilter) {
        return CGaussianPyramid2::DownScaleImage(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, bDither);
    }
    return CGaussianPyramid2::DownScaleImageFast(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim);
}

// Gives dst twice the size of src. The row-parallel doubling writes nothing for a source of one row, and the buffer may
// hold an older picture.
template <class Image>
bool AllocateDouble(const Image& src, Image& dst)
{
    assert(&src != &dst);
    if (src.Empty() || !dst.AllocateDim(2 * src.nWidth, 2 * src.nHeight, src.nDim)) return false;
    if (src.nHeight == 1) std::fill_n(dst.pData, dst.Samples(), 0);
    return true;
}

}  // namespace

bool HalveImage(const CImage& src, CImage& dst, bool bFilter, bool bDither)
{
    assert(&src != &dst);
    if (src.Empty()) return false;
    const int w2 = src.nWidth + (src.nWidth & 1);
    const int h2 = src.nHeight + (src.nHeight & 1);
    if (w2 == src.nWidth && h2 == src.nHeight) return HalveEven(src, dst, bFilter, bDither);

    CImage even{};
    ImageScope scope(even);
    if (!even.AllocateDim(w2, h2, src.nDim)) return false;
    CGaussianPyramid2::ExpandImage(src.pData, even.pData, src.nWidth, src.nHeight, w2, h2, src.nDim);
    return HalveEven(even, dst, bFilter, bDither);
}

bool DoubleImage(const CImage& src, CImage& dst, bool bFilter, bool bDither)
{
    if (!AllocateDouble(src, dst)) return false;
    if (bFilter) {
        return CGaussianPyramid2::UpScaleImage(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, bDither);
    }
    return CGaussianPyramid2::UpScaleImageFast(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim);
}

bool DoubleShort(const CShortImage& src, CShortImage& dst, bool bFilter, bool bDither)
{
    if (!AllocateDouble(src, dst)) return false;
    dst.nRangeMax = src.nRangeMax;
    dst.nRangeMin = src.nRangeMin;
    if (bFilter) {
        return CGaussianPyramid2::UpScaleShort(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, bDither);
    }
    if (bDither) {
        return CGaussianPyramid2::UpScaleShortFast(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, true);
    }
    return CGaussianPyramid2::UpScaleShortParallel(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim);
}

}  // namespace vkr
