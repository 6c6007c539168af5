#include "foundation/bmp.h"

#include <cstdio>
#include <cstring>

#include "foundation/heap_buffer.h"

namespace vkr {

namespace {

constexpr uint32_t kHeaderBytes = 54;

// Writes nBytes of v, the lowest first.
void PutLittleEndian(uint8_t* pDst, uint32_t v, int nBytes)
{
    for (int i = 0; i < nBytes; ++i) pDst[i] = static_cast<uint8_t>(v >> (8 * i));
}

void FillHeader(uint8_t* pHeader, uint32_t w, uint32_t h, uint32_t nRowBytes)
{
    std::memset(pHeader, 0, kHeaderBytes);
    pHeader[0] = 'B';
    pHeader[1] = 'M';
    PutLittleEndian(pHeader + 2, nRowBytes * h + kHeaderBytes, 4);  // bytes of the file
    PutLittleEndian(pHeader + 10, kHeaderBytes, 4);                 // where the rows begin
    PutLittleEndian(pHeader + 14, 40, 4);                           // bytes of the second part of the header
    PutLittleEndian(pHeader + 18, w, 4);
    PutLittleEndian(pHeader + 22, h, 4);
    PutLittleEndian(pHeader + 26, 1, 2);   // planes
    PutLittleEndian(pHeader + 28, 24, 2);  // bits per pixel
    PutLittleEndian(pHeader + 38, 75, 4);  // pixels per metre; the picture size before it stays 0
    PutLittleEndian(pHeader + 42, 75, 4);
}

// Three bytes per pixel, a grey value three times.
void FillRow(const CImage& image, int y, uint8_t* pDst)
{
    const uint8_t* const pSrc = image.Row(y);
    if (image.nDim == 3) {
        std::memcpy(pDst, pSrc, static_cast<size_t>(image.RowSamples()));
        return;
    }
    for (int x = 0; x < image.nWidth; ++x) {
        for (int c = 0; c < 3; ++c) pDst[3 * x + c] = pSrc[x];
    }
}

bool WriteRows(std::FILE* pFile, const CImage& image, bool bBottomUp, HeapBuffer<uint8_t>& row)
{
    for (int i = 0; i < image.nHeight; ++i) {
        FillRow(image, bBottomUp ? image.nHeight - 1 - i : i, row.Data());
        if (std::fwrite(row.Data(), 1, row.Count(), pFile) != row.Count()) return false;
    }
    return true;
}

bool SaveRows(const CImage& image, const char* pPath, bool bBottomUp)
{
    if (image.Empty() || pPath == nullptr) return false;
    const size_t nRowBytes = (static_cast<size_t>(image.nWidth) * 24 + 31) / 32 * 4;
    HeapBuffer<uint8_t> row;  // zeros behind the pixels
    if (!row.AllocateZero(nRowBytes)) return false;
    std::FILE* const pFile = std::fopen(pPath, "wb");
    if (pFile == nullptr) return false;
    uint8_t vHeader[kHeaderBytes];
    FillHeader(vHeader, static_cast<uint32_t>(image.nWidth), static_cast<uint32_t>(image.nHeight),
               static_cast<uint32_t>(nRowBytes));
    const bool bWritten =
        std::fwrite(vHeader, 1, kHeaderBytes, pFile) == kHeaderBytes && WriteRows(pFile, image, bBottomUp, row);
    return std::fclose(pFile) == 0 && bWritten;
}

}  // namespace

bool SaveBmp(const CImage& image, const char* pPath, bool bBottomUp)
{
    return image.nDim == 3 && SaveRows(image, pPath, bBottomUp);
}

bool SaveBmpGray(const CImage& image, const char* pPath)
{
    return image.nDim == 1 && SaveRows(image, pPath, true);
}

}  // namespace vkr
