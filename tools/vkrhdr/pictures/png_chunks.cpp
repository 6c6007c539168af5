#include "pictures/png_chunks.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>

#include "pictures/colour_profile.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr size_t kSignature = 8, kHeaderEnd = kSignature + 12 + 13;  // IHDR is 13 bytes long

struct PngSource {
    const Bytes& vBytes;
    size_t nDone = 0;
};

void ReadPiece(png_structp pPng, png_bytep pTo, size_t nCount)
{
    PngSource& source = *static_cast<PngSource*>(png_get_io_ptr(pPng));
    if (nCount > source.vBytes.size() - source.nDone) png_error(pPng, "cut short");
    std::memcpy(pTo, source.vBytes.data() + source.nDone, nCount);
    source.nDone += nCount;
}

struct PngInfo {
    png_structp pPng = nullptr;
    png_infop pInfo = nullptr;

    ~PngInfo() { png_destroy_read_struct(&pPng, &pInfo, nullptr); }
};

// False when libpng gave up, which it does by a long jump: nothing here owns anything.
bool ReadInfo(PngInfo& info, PngSource& source)
{
    if (setjmp(png_jmpbuf(info.pPng)) != 0) return false;
    png_set_read_fn(info.pPng, &source, &ReadPiece);
    png_read_info(info.pPng, info.pInfo);
    return true;
}

Bytes ProfileOf(const PngInfo& info)
{
    png_charp pName = nullptr;
    png_bytep pProfile = nullptr;
    int nMethod = 0;
    png_uint_32 nSize = 0;
    if (png_get_iCCP(info.pPng, info.pInfo, &pName, &nMethod, &pProfile, &nSize) != 0) {
        return Bytes(pProfile, pProfile + nSize);
    }
    double p[8];
    if (png_get_valid(info.pPng, info.pInfo, PNG_INFO_sRGB) != 0 ||
        png_get_cHRM(info.pPng, info.pInfo, &p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &p[6], &p[7]) == 0) {
        return {};
    }
    return ProfileOfPrimaries(p);
}

uint32_t Number(const uint8_t* p)
{
    return static_cast<uint32_t>(p[0]) << 24 | p[1] << 16 | p[2] << 8 | p[3];
}

void Append(uint32_t n, Bytes& vBytes)
{
    for (int nShift = 24; nShift >= 0; nShift -= 8) vBytes.push_back(static_cast<uint8_t>(n >> nShift));
}

bool IsAboutColours(const uint8_t* pType)
{
    const char* const vTypes[] = {"gAMA", "cHRM", "iCCP", "sRGB"};
    return std::any_of(std::begin(vTypes), std::end(vTypes),
                       [&](const char* pName) { return std::memcmp(pType, pName, 4) == 0; });
}

Bytes ProfileChunk(const Bytes& vProfile)
{
    static const char kHead[] = "iCCPICC profile\0";  // type, name and its end, method 0 by the literal's own end
    uLongf nPacked = compressBound(static_cast<uLong>(vProfile.size()));
    Bytes vPacked(nPacked);
    if (compress(vPacked.data(), &nPacked, vProfile.data(), static_cast<uLong>(vProfile.size())) != Z_OK) {
        throw BurstError("the PNG encoder failed: the colour profile can not be packed");
    }
    Bytes vChunk;
    Append(static_cast<uint32_t>(sizeof(kHead) - 4 + nPacked), vChunk);
    vChunk.insert(vChunk.end(), kHead, kHead + sizeof(kHead));
    vChunk.insert(vChunk.end(), vPacked.begin(), vPacked.begin() + static_cast<std::ptrdiff_t>(nPacked));
    Append(static_cast<uint32_t>(crc32(0, vChunk.data() + 4, static_cast<uInt>(vChunk.size() - 4))), vChunk);
    return vChunk;
}

}  // namespace

PngFacts ReadPngFacts(const Bytes& vPng)
{
    PngSource source{vPng};
    PngInfo info;
    PngFacts facts;
    const auto ignore = [](png_structp, png_const_charp) {};
    info.pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, ignore);
    if (info.pPng != nullptr) info.pInfo = png_create_info_struct(info.pPng);
    if (info.pInfo == nullptr || !ReadInfo(info, source)) return facts;
    facts.vProfile = ProfileOf(info);
    facts.bDeep = png_get_bit_depth(info.pPng, info.pInfo) > 8;
    facts.bTransparent = (png_get_color_type(info.pPng, info.pInfo) & PNG_COLOR_MASK_ALPHA) != 0 ||
                         png_get_valid(info.pPng, info.pInfo, PNG_INFO_tRNS) != 0;
    return facts;
}

// What is no chain of chunks goes through as it is; the decoder will find it.
Bytes WithoutColourChunks(const Bytes& vPng)
{
    Bytes vResult(vPng.begin(), vPng.begin() + static_cast<std::ptrdiff_t>(std::min(vPng.size(), kSignature)));
    size_t nPlace = vResult.size();
    while (nPlace < vPng.size()) {
        const size_t nLeft = vPng.size() - nPlace;
        const size_t nChunk = nLeft < 12 ? nLeft : std::min(nLeft, size_t{12} + Number(vPng.data() + nPlace));
        const auto chunk = vPng.begin() + static_cast<std::ptrdiff_t>(nPlace);
        if (nLeft < 12 || !IsAboutColours(vPng.data() + nPlace + 4)) {
            vResult.insert(vResult.end(), chunk, chunk + static_cast<std::ptrdiff_t>(nChunk));
        }
        nPlace += nChunk;
    }
    return vResult;
}

Bytes WithProfileChunk(const Bytes& vPng, const Bytes& vProfile)
{
    Bytes vResult = WithoutColourChunks(vPng);
    const Bytes vChunk = ProfileChunk(vProfile);
    vResult.insert(vResult.begin() + static_cast<std::ptrdiff_t>(kHeaderEnd), vChunk.begin(), vChunk.end());
    return vResult;
}

}  // namespace vkr::tool
