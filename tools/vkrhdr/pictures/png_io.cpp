#include <png.h>

#include <algorithm>
#include <cstring>

#include "pictures/picture_io.h"
#include "pictures/png_chunks.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// libpng's own record of a picture, freed on every way out.
class PngRecord {
public:
    PngRecord()
    {
        std::memset(&m_image, 0, sizeof(m_image));
        m_image.version = PNG_IMAGE_VERSION;
    }
    ~PngRecord() { png_image_free(&m_image); }
    PngRecord(const PngRecord&) = delete;
    PngRecord& operator=(const PngRecord&) = delete;

    png_image* operator->() { return &m_image; }
    png_image* Get() { return &m_image; }

private:
    png_image m_image;
};

constexpr png_uint_32 kMaxSide = 16384;

// Before the pixels, as the decoder would find it.
bool HasProfile(const Bytes& vBytes)
{
    const auto holds = [&](const char* pType, Bytes::const_iterator end) {
        return std::search(vBytes.begin(), end, pType, pType + 4);
    };
    const auto pixels = holds("IDAT", vBytes.end());
    return holds("iCCP", pixels) != pixels;
}

}  // namespace

Raster ReadPng(const Bytes& vBytes, const std::string& sName)
{
    PngRecord image;
    const Bytes vPlain = HasProfile(vBytes) ? WithoutColourChunks(vBytes) : vBytes;
    if (!png_image_begin_read_from_memory(image.Get(), vPlain.data(), vPlain.size())) {
        throw BurstError(sName + ": no usable PNG: " + image->message);
    }
    if (image->width > kMaxSide || image->height > kMaxSide) {
        throw BurstError(sName + ": is wider or higher than 16384 pixels");
    }
    image->format = PNG_FORMAT_RGB;
    image->flags |= PNG_IMAGE_FLAG_16BIT_sRGB;  // 16-bit samples are display values too, unless the file says otherwise
    Raster rgb;
    rgb.Resize(static_cast<int>(image->width), static_cast<int>(image->height), 3);
    const png_color black{0, 0, 0};
    if (!png_image_finish_read(image.Get(), &black, rgb.vSamples.data(), 0, nullptr)) {
        throw BurstError(sName + ": is damaged: " + image->message);
    }
    return rgb;
}

Bytes WritePng(const Raster& raster, bool bFast, const Bytes& vProfile)
{
    PngRecord image;
    image->width = static_cast<png_uint_32>(raster.nWidth);
    image->height = static_cast<png_uint_32>(raster.nHeight);
    image->format = raster.nChannels == 1 ? PNG_FORMAT_GRAY : PNG_FORMAT_RGB;
    if (bFast) image->flags |= PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t nSize = PNG_IMAGE_PNG_SIZE_MAX(*image.Get());
    Bytes vBytes(nSize);
    if (!png_image_write_to_memory(image.Get(), vBytes.data(), &nSize, 0, raster.vSamples.data(), 0, nullptr)) {
        throw BurstError(std::string("the PNG encoder failed: ") + image->message);
    }
    vBytes.resize(nSize);
    return vProfile.empty() ? vBytes : WithProfileChunk(vBytes, vProfile);
}

}  // namespace vkr::tool
