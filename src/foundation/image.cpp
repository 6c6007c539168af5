#include "foundation/image.h"

#include <cstring>
#include <limits>
#include <utility>

#include "foundation/fixed_point.h"
#include "foundation/mem_pool.h"

namespace vkr {

namespace {

constexpr uint64_t kMargin = 128;  // bytes behind the last sample, for vector loads

// Bytes for w x h x nChannels samples and the margin; 0 if a size is negative, a row exceeds an int or the sum exceeds
// 32 bits, the most that a capacity may hold.
uint64_t NeededBytes(int w, int h, int nChannels, size_t nSampleBytes)
{
    if (w < 0 || h < 0 || nChannels < 0) return 0;
    const uint64_t nRow = static_cast<uint64_t>(w) * static_cast<uint64_t>(nChannels) * nSampleBytes;
    constexpr uint64_t nMaxRow = std::numeric_limits<int32_t>::max(), nMax = std::numeric_limits<uint32_t>::max();
    if (nRow > nMaxRow || nRow * static_cast<uint64_t>(h) > nMax - kMargin) return 0;
    return nRow * static_cast<uint64_t>(h) + kMargin;
}

// The size rule that CImage and CShortImage share.
template <class Image, class Sample>
bool AllocateSamples(Image& image, int w, int h, int nChannels)
{
    const uint64_t nNeeded = NeededBytes(w, h, nChannels, sizeof(Sample));
    if (nNeeded == 0 || nNeeded > image.nCapacity) {
        image.Release();
        if (nNeeded == 0) return false;
        image.pData = static_cast<Sample*>(PoolAlloc(static_cast<size_t>(nNeeded)));
        if (image.pData == nullptr) return false;
        image.nCapacity = static_cast<uint32_t>(nNeeded);
    }
    image.nWidth = w;
    image.nHeight = h;
    image.nDim = nChannels;
    return true;
}

template <class Image>
void SwapRecords(Image& a, Image& b)
{
    unsigned char temp[sizeof(Image)];
    std::memcpy(temp, &a, sizeof(Image));
    std::memcpy(&a, &b, sizeof(Image));
    std::memcpy(&b, temp, sizeof(Image));
}

size_t ClampedRow(int y, int nRows)
{
    return static_cast<size_t>(Clamp(y, 0, nRows > 0 ? nRows - 1 : 0));
}

}  // namespace

bool CImage::AllocateDim(int w, int h, int nChannels)
{
    return AllocateSamples<CImage, uint8_t>(*this, w, h, nChannels);
}

bool CImage::CopyFrom(const CImage& src)
{
    return src.nDim == 3 && CopyDimFrom(src);
}

bool CImage::CopyGrayFrom(const CImage& src)
{
    return src.nDim == 1 && CopyDimFrom(src);
}

bool CImage::CopyDimFrom(const CImage& src)
{
    if (!AllocateDim(src.nWidth, src.nHeight, src.nDim)) return false;
    if (src.Samples() > 0) std::memcpy(pData, src.pData, src.Samples());
    return true;
}

void CImage::Release()
{
    PoolFree(pData);
    *this = CImage{};
}

void CImage::Swap(CImage& other)
{
    SwapRecords(*this, other);
}

size_t CImage::RowOffset(int y) const
{
    return ClampedRow(y, nHeight) * static_cast<size_t>(RowSamples());
}

bool CShortImage::AllocateDim(int w, int h, int nChannels)
{
    return AllocateSamples<CShortImage, int16_t>(*this, w, h, nChannels);
}

bool CShortImage::CopyDimFrom(const CShortImage& src)
{
    if (!AllocateDim(src.nWidth, src.nHeight, src.nDim)) return false;
    if (src.Samples() > 0) std::memcpy(pData, src.pData, src.Samples() * sizeof(int16_t));
    nRangeMax = src.nRangeMax;
    nRangeMin = src.nRangeMin;
    return true;
}

void CShortImage::Release()
{
    PoolFree(pData);
    *this = CShortImage{};
}

void CShortImage::Swap(CShortImage& other)
{
    SwapRecords(*this, other);
}

size_t CShortImage::RowOffset(int y) const
{
    return ClampedRow(y, nHeight) * static_cast<size_t>(RowSamples());
}

bool CYuvImage::Allocate(int w, int h)
{
    w &= ~1;
    h &= ~1;
    const uint64_t nNeeded = w < 0 || h < 0 ? 0 : static_cast<uint64_t>(w) * static_cast<uint64_t>(h) / 2 * 3;
    const bool bFits = w >= 0 && h >= 0 && nNeeded <= static_cast<uint64_t>(std::numeric_limits<int32_t>::max());
    if (!bFits || static_cast<int64_t>(nNeeded) > nCapacity || pBuffer == nullptr) {
        Release();
        if (!bFits) return false;
        pBuffer = static_cast<uint8_t*>(PoolAlloc(static_cast<size_t>(nNeeded)));
        if (pBuffer == nullptr) return false;
        nCapacity = static_cast<int32_t>(nNeeded);
        PoolNoteUse(static_cast<size_t>(nNeeded));
    }
    nWidth = w;
    nHeight = h;
    pY = pBuffer;
    pUV = pBuffer + static_cast<size_t>(w) * static_cast<size_t>(h);
    return true;
}

bool CYuvImage::CopyFrom(const CYuvImage& src)
{
    if (!Allocate(src.nWidth, src.nHeight)) return false;
    const size_t nBytes = static_cast<size_t>(nWidth) * static_cast<size_t>(nHeight) / 2 * 3;
    if (nBytes > 0) std::memcpy(pBuffer, src.pBuffer, nBytes);
    return true;
}

void CYuvImage::Release()
{
    PoolFree(pBuffer);
    *this = CYuvImage{};
}

void CYuvImage::Swap(CYuvImage& other)
{
    SwapRecords(*this, other);
}

size_t CYuvImage::RowOffset(int y, int nRows) const
{
    return ClampedRow(y, nRows) * static_cast<size_t>(nWidth);
}

}  // namespace vkr
