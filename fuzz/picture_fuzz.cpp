#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "fuzz_check.h"
#include "pictures/exif_io.h"
#include "pictures/picture_io.h"
#include "pictures/tool_error.h"

// A picture file, JPEG or PNG, as the program takes it: a frame whose planes fit its size, or an error of the one kind
// that the program shows; what the file tells about how it was taken lies in its range.

namespace {

constexpr uint32_t kMostPixels = 128 * 128;  // by the header, so that a case stays small

uint32_t BigEndian(const uint8_t* p, size_t nBytes)
{
    uint32_t n = 0;
    for (size_t i = 0; i < nBytes; ++i) n = n << 8 | p[i];
    return n;
}

bool IsPng(const uint8_t* pData, size_t nBytes)
{
    return nBytes >= 8 && std::memcmp(pData + 1, "PNG", 3) == 0;
}

bool Small(uint64_t nWidth, uint64_t nHeight)
{
    return nWidth * nHeight <= kMostPixels;
}

// Every place that could be read as the frame header of a JPEG, and the first chunk of a PNG.
bool IsSmall(const uint8_t* pData, size_t nBytes)
{
    if (IsPng(pData, nBytes)) return nBytes < 24 || Small(BigEndian(pData + 16, 4), BigEndian(pData + 20, 4));
    for (size_t i = 0; i + 9 <= nBytes; ++i) {
        const bool bFrame = pData[i] == 0xFF && (pData[i + 1] & 0xF0) == 0xC0;
        if (bFrame && !Small(BigEndian(pData + i + 7, 2), BigEndian(pData + i + 5, 2))) return false;
    }
    return true;
}

uint32_t Crc(const uint8_t* p, size_t nBytes)
{
    static const auto table = [] {
        std::array<uint32_t, 256> values{};
        for (uint32_t i = 0; i < 256; ++i) {
            uint32_t n = i;
            for (int k = 0; k < 8; ++k) n = n >> 1 ^ (n & 1 ? 0xEDB88320U : 0);
            values[i] = n;
        }
        return values;
    }();
    uint32_t n = 0xFFFFFFFF;
    for (size_t i = 0; i < nBytes; ++i) n = table[(n ^ p[i]) & 255] ^ n >> 8;
    return ~n;
}

// Chunks are told apart by their lengths; each that lies inside the file gets the sum that its bytes want.
void MendSums(uint8_t* pData, size_t nBytes)
{
    for (size_t i = 8; i + 12 <= nBytes;) {
        const size_t nLength = BigEndian(pData + i, 4);
        if (nLength > nBytes - i - 12) return;
        const uint32_t nSum = Crc(pData + i + 4, nLength + 4);
        for (int k = 0; k < 4; ++k) pData[i + 8 + nLength + k] = static_cast<uint8_t>(nSum >> (24 - 8 * k));
        i += nLength + 12;
    }
}

void ReadFrame(const vkr::tool::Bytes& vFile)
{
    std::string sWarning;
    try {
        const vkr::tool::StoredFrame stored = vkr::tool::ReadPicture(vFile, "case", sWarning);
        const vkr::tool::Frame& frame = stored.frame;
        FUZZ_CHECK(frame.nWidth >= 2 && frame.nWidth == (stored.nStoredWidth & ~1));
        FUZZ_CHECK(frame.nHeight >= 2 && frame.nHeight == (stored.nStoredHeight & ~1));
        const size_t nLuma = static_cast<size_t>(frame.nWidth) * frame.nHeight;
        FUZZ_CHECK(frame.vY.size() == nLuma && frame.vUV.size() == nLuma / 2);
    } catch (const vkr::tool::BurstError& error) {
        FUZZ_CHECK(std::strncmp(error.what(), "case", 4) == 0);
    }
}

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* pData, size_t nBytes, size_t nMost);

// Half of the files keep sums that are wrong.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* pData, size_t nBytes, size_t nMost, unsigned nSeed)
{
    nBytes = LLVMFuzzerMutate(pData, nBytes, nMost);
    if (nSeed % 2 == 0 && IsPng(pData, nBytes)) MendSums(pData, nBytes);
    return nBytes;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nBytes)
{
    if (!IsSmall(pData, nBytes)) return -1;
    const vkr::tool::Bytes vFile(pData, pData + nBytes);
    ReadFrame(vFile);
    const vkr::tool::PhotoInfo info = vkr::tool::ReadPhotoInfo(vFile);
    FUZZ_CHECK(std::isfinite(info.fExposure) && info.fExposure >= 0);
    FUZZ_CHECK(info.nOrientation >= 1 && info.nOrientation <= 8);
    return 0;
}
