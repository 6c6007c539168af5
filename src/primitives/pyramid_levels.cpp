#include "primitives/pyramid_levels.h"

#include <algorithm>
#include <cassert>

#include "foundation/image_scope.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

namespace {

using Pyramid = CGaussianPyramid2;

bool HalveEven(const CImage& src, CImage& dst, bool bFilter, bool bDither)
{
    const int w = src.nWidth, h = src.nHeight;
    if (bFilter) return Pyramid::DownScaleImage(src.pData, dst.pData, w, h, src.nDim, bDither);
    return Pyramid::DownScaleImageFast(src.pData, dst.pData, w, h, src.nDim);
}

bool HalveEven(const CShortImage& src, CShortImage& dst, bool bFilter, bool bDither)
{
    const int w = src.nWidth, h = src.nHeight;
    if (bFilter) return Pyramid::DownScaleShort(src.pData, dst.pData, w, h, src.nDim, bDither);
    if (bDither) return Pyramid::DownScaleShortFast(src.pData, dst.pData, w, h, src.nDim, true);
    return Pyramid::DownScaleShortParallel(src.pData, dst.pData, w, h, src.nDim);
}

void Expand(const CImage& src, CImage& even)
{
    Pyramid::ExpandImage(src.pData, even.pData, src.nWidth, src.nHeight, even.nWidth, even.nHeight, src.nDim);
}

void Expand(const CShortImage& src, CShortImage& even)
{
    Pyramid::ExpandShort(src.pData, even.pData, src.nWidth, src.nHeight, even.nWidth, even.nHeight, src.nDim);
}

template <class Image>
bool HalvePadded(const Image& src, Image& dst, bool bFilter, bool bDither)
{
    assert(&src != &dst);
    if (src.Empty()) return false;
    const int w2 = src.nWidth + (src.nWidth & 1);
    const int h2 = src.nHeight + (src.nHeight & 1);
    if (!dst.AllocateDim(w2 / 2, h2 / 2, src.nDim)) return false;
    if (w2 == src.nWidth && h2 == src.nHeight) return HalveEven(src, dst, bFilter, bDither);

    Image even{};
    ImageScope scope(even);
    if (!even.AllocateDim(w2, h2, src.nDim)) return false;
    Expand(src, even);
    return HalveEven(even, dst, bFilter, bDither);
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
    return HalvePadded(src, dst, bFilter, bDither);
}

bool HalveShort(const CShortImage& src, CShortImage& dst, bool bFilter, bool bDither)
{
    if (!HalvePadded(src, dst, bFilter, bDither)) return false;
    dst.nRangeMax = src.nRangeMax;
    dst.nRangeMin = src.nRangeMin;
    return true;
}

bool DoubleImage(const CImage& src, CImage& dst, bool bFilter, bool bDither)
{
    if (!AllocateDouble(src, dst)) return false;
    if (bFilter) {
        return Pyramid::UpScaleImage(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, bDither);
    }
    return Pyramid::UpScaleImageFast(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim);
}

bool DoubleShort(const CShortImage& src, CShortImage& dst, bool bFilter, bool bDither)
{
    if (!AllocateDouble(src, dst)) return false;
    dst.nRangeMax = src.nRangeMax;
    dst.nRangeMin = src.nRangeMin;
    if (bFilter) {
        return Pyramid::UpScaleShort(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, bDither);
    }
    if (bDither) {
        return Pyramid::UpScaleShortFast(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim, true);
    }
    return Pyramid::UpScaleShortParallel(src.pData, dst.pData, src.nWidth, src.nHeight, src.nDim);
}

}  // namespace vkr
