#include "ghosts/level_carry.h"

#include <algorithm>
#include <cstring>

#include "foundation/image_scope.h"

namespace vkr {

namespace {

bool Halve(const CImage& src, CImage& dst, const PyramidParams& pyramid)
{
    return HalveImage(src, dst, pyramid.bPyramidFilter, pyramid.bDownScaleOtherDither);
}
bool Halve(const CShortImage& src, CShortImage& dst, const PyramidParams& pyramid)
{
    return HalveShort(src, dst, pyramid.bPyramidFilter, pyramid.bDownScaleOtherDither);
}
bool Double(const CImage& src, CImage& dst, const PyramidParams& pyramid)
{
    return DoubleImage(src, dst, pyramid.bPyramidFilter, pyramid.bUpScaleOtherDither);
}
bool Double(const CShortImage& src, CShortImage& dst, const PyramidParams& pyramid)
{
    return DoubleShort(src, dst, pyramid.bPyramidFilter, pyramid.bUpScaleOtherDither);
}

// Rows move towards the front, so each is read before it is written over.
template <class Image>
bool CropRows(Image& image, int w, int h)
{
    if (image.Empty() || w > image.nWidth || h > image.nHeight) return false;
    if (w == image.nWidth && h == image.nHeight) return true;
    const size_t nRowBytes = static_cast<size_t>(w) * image.nDim * sizeof(image.pData[0]);
    for (int y = 1; y < h; ++y)
        std::memmove(image.pData + static_cast<size_t>(y) * w * image.nDim, image.Row(y), nRowBytes);
    return image.AllocateDim(w, h, image.nDim);  // keeps the samples: the buffer suffices
}

template <class Image>
bool HalveInto(const Image& src, const CImage& size, const PyramidParams& pyramid, Image& dst)
{
    Image half{};
    ImageScope scope(half);
    if (!Halve(src, half, pyramid) || half.nWidth != size.nWidth || half.nHeight != size.nHeight) return false;
    dst.Swap(half);
    return true;
}

template <class Image>
bool RepeatRow(const Image& src, Image& dst)
{
    if (!dst.AllocateDim(src.nWidth, 2, src.nDim)) return false;
    for (int y = 0; y < 2; ++y) std::copy_n(src.pData, src.Samples(), dst.Row(y));
    return true;
}

template <class Image>
bool DoubleInto(const Image& src, const CImage& size, const PyramidParams& pyramid, Image& dst)
{
    Image twoRows{}, twice{};
    ImageScope scopeRows(twoRows), scopeTwice(twice);
    const bool bOneRow = !pyramid.bPyramidFilter && src.nHeight == 1;
    if (bOneRow && !RepeatRow(src, twoRows)) return false;
    if (!Double(bOneRow ? twoRows : src, twice, pyramid) || !CropRows(twice, size.nWidth, size.nHeight)) return false;
    dst.Swap(twice);
    return true;
}

template <class Image>
bool Carry(Image* vLevels, const CImage* vSizes, int nMin, int nStart, int nMax, const PyramidParams& pyramid)
{
    for (int i = nStart; i < nMax; ++i) {
        if (!HalveInto(vLevels[i], vSizes[i + 1], pyramid, vLevels[i + 1])) return false;
    }
    for (int i = nStart; i > nMin; --i) {
        if (!DoubleInto(vLevels[i], vSizes[i - 1], pyramid, vLevels[i - 1])) return false;
    }
    return true;
}

}  // namespace

bool HalveTimes(const CImage& src, int nTimes, bool bFilter, bool bDither, CImage& dst)
{
    if (nTimes <= 0) return dst.CopyDimFrom(src);
    CImage half{};
    ImageScope scope(half);
    if (!HalveImage(src, dst, bFilter, bDither)) return false;
    for (int i = 1; i < nTimes; ++i) {
        if (!HalveImage(dst, half, bFilter, bDither)) return false;
        dst.Swap(half);
    }
    return true;
}

bool CropTo(CImage& image, int w, int h)
{
    return CropRows(image, w, h);
}

bool CarryToLevels(CImage* vLevels, const CImage* vSizes, int nMin, int nStart, int nMax, const PyramidParams& pyramid)
{
    return Carry(vLevels, vSizes, nMin, nStart, nMax, pyramid);
}

bool CarryToLevels(CShortImage* vLevels, const CImage* vSizes, int nMin, int nStart, int nMax,
                   const PyramidParams& pyramid)
{
    return Carry(vLevels, vSizes, nMin, nStart, nMax, pyramid);
}

}  // namespace vkr
