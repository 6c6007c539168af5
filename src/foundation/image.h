#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// The three picture records. They are plain: zero-filled is empty, nothing is released behind the owner's back. Whoever
// holds one calls Release, mostly through an ImageScope. Two records never share a buffer, so records are copied by
// CopyFrom and exchanged by Swap, never assigned.
//
// Rows are tight: sample (x, y, c) stands at (y * nWidth + x) * nDim + c. Buffers come from the pool with 128 bytes
// behind the samples, so that vector loads may run past the last one; they are reused while the capacity suffices and
// only grow. Allocate keeps the old samples of a reused buffer and clears nothing. It returns false, with the record
// empty, when there is no memory, a size is negative or the byte count does not fit 32 bits.

// Samples of 8 bits. Pictures have nDim 3 (B, G, R or Y, Cb, Cr), masks 1, weights one channel per exposure.
struct CImage {
    int32_t nWidth, nHeight, nDim;
    uint8_t* pData;
    uint32_t nCapacity;  // bytes held by pData

    bool Allocate(int w, int h) { return AllocateDim(w, h, 3); }
    bool AllocateGray(int w, int h) { return AllocateDim(w, h, 1); }
    bool AllocateDim(int w, int h, int nChannels);
    bool CopyFrom(const CImage& src);      // nDim becomes 3; src has nDim 3
    bool CopyGrayFrom(const CImage& src);  // nDim becomes 1; src has nDim 1
    bool CopyDimFrom(const CImage& src);   // any nDim
    void Release();
    void Swap(CImage& other);

    // y is clamped to the picture: a row outside is the nearest edge row.
    uint8_t* Row(int y) { return pData + RowOffset(y); }
    const uint8_t* Row(int y) const { return pData + RowOffset(y); }
    int RowSamples() const { return nWidth * nDim; }
    size_t Samples() const { return static_cast<size_t>(nWidth) * nHeight * nDim; }
    bool Empty() const { return pData == nullptr || nWidth <= 0 || nHeight <= 0; }

private:
    size_t RowOffset(int y) const;
};

// Samples of signed 16 bits: Laplacian levels, detail layers, coefficients, the fused picture (nDim 6).
struct CShortImage {
    int32_t nWidth, nHeight, nDim;
    int16_t* pData;
    uint32_t nCapacity;            // bytes held by pData
    int32_t nRangeMax, nRangeMin;  // carried from input to output, not part of any arithmetic

    bool AllocateDim(int w, int h, int nChannels);
    bool CopyDimFrom(const CShortImage& src);
    void Release();
    void Swap(CShortImage& other);

    int16_t* Row(int y) { return pData + RowOffset(y); }
    const int16_t* Row(int y) const { return pData + RowOffset(y); }
    int RowSamples() const { return nWidth * nDim; }
    size_t Samples() const { return static_cast<size_t>(nWidth) * nHeight * nDim; }
    bool Empty() const { return pData == nullptr || nWidth <= 0 || nHeight <= 0; }

private:
    size_t RowOffset(int y) const;
};

// Semi-planar 4:2:0, even sizes. Luma rows and rows of chroma pairs are both nWidth bytes.
struct CYuvImage {
    int32_t nWidth, nHeight;
    int32_t nCapacity;  // bytes held by pBuffer; no margin behind the pixels
    uint8_t* pBuffer;   // the one allocation
    uint8_t* pY;        // = pBuffer
    uint8_t* pUV;       // = pBuffer + nWidth * nHeight, nHeight / 2 rows

    bool Allocate(int w, int h);  // both lose their lowest bit
    bool CopyFrom(const CYuvImage& src);
    void Release();
    void Swap(CYuvImage& other);

    // y is clamped to the plane.
    uint8_t* RowY(int y) { return pY + RowOffset(y, nHeight); }
    const uint8_t* RowY(int y) const { return pY + RowOffset(y, nHeight); }
    uint8_t* RowUV(int y) { return pUV + RowOffset(y, nHeight / 2); }
    const uint8_t* RowUV(int y) const { return pUV + RowOffset(y, nHeight / 2); }
    bool Empty() const { return pBuffer == nullptr || nWidth <= 0 || nHeight <= 0; }

private:
    size_t RowOffset(int y, int nRows) const;
};

}  // namespace vkr
