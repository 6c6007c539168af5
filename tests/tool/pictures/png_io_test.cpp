#include <gtest/gtest.h>
#include <png.h>

#include <cstring>
#include <random>

#include "pictures/picture_io.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// What libpng's simplified writer makes of samples in that format.
Bytes EncodePng(png_uint_32 nFormat, int w, int h, const void* pSamples, const void* pColours = nullptr,
                int nColours = 0)
{
    png_image image;
    std::memset(&image, 0, sizeof(image));
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(w);
    image.height = static_cast<png_uint_32>(h);
    image.format = nFormat;
    image.colormap_entries = static_cast<png_uint_32>(nColours);
    Bytes vBytes(65536);
    png_alloc_size_t nSize = vBytes.size();
    EXPECT_TRUE(png_image_write_to_memory(&image, vBytes.data(), &nSize, 0, pSamples, 0, pColours)) << image.message;
    vBytes.resize(nSize);
    return vBytes;
}

}  // namespace

TEST(WritePng, ComesBackToTheBit)
{
    std::mt19937 rng(5);
    for (const int nSide : {1, 2, 7, 64}) {
        for (const bool bFast : {false, true}) {
            Raster rgb;
            rgb.Resize(nSide, nSide + 1, 3);
            for (uint8_t& n : rgb.vSamples) n = static_cast<uint8_t>(rng());
            const Raster back = ReadPng(WritePng(rgb, bFast), "test.png");
            EXPECT_EQ(nSide, back.nWidth);
            EXPECT_EQ(nSide + 1, back.nHeight);
            EXPECT_EQ(rgb.vSamples, back.vSamples);
        }
    }
}

TEST(ReadPng, TakesGreyAndPalette)
{
    const uint8_t vGrey[] = {0, 100, 200, 255};
    const Raster grey = ReadPng(EncodePng(PNG_FORMAT_GRAY, 2, 2, vGrey), "grey.png");
    EXPECT_EQ((Bytes{0, 0, 0, 100, 100, 100, 200, 200, 200, 255, 255, 255}), grey.vSamples);

    const uint8_t vIndex[] = {1, 0, 1, 1}, vColours[] = {10, 20, 30, 200, 100, 50};
    const Raster palette = ReadPng(EncodePng(PNG_FORMAT_RGB_COLORMAP, 2, 2, vIndex, vColours, 2), "palette.png");
    EXPECT_EQ((Bytes{200, 100, 50, 10, 20, 30, 200, 100, 50, 200, 100, 50}), palette.vSamples);
}

TEST(ReadPng, PutsTransparentPartsBeforeBlack)
{
    const uint8_t vRgba[] = {200, 100, 50, 255, 200, 100, 50, 0};
    EXPECT_EQ((Bytes{200, 100, 50, 0, 0, 0}), ReadPng(EncodePng(PNG_FORMAT_RGBA, 2, 1, vRgba), "a.png").vSamples);
}

// The chunks IHDR and IDAT alone tell the format; 16 bits of display values must not be taken for linear light.
TEST(ReadPng, RoundsSixteenBits)
{
    Bytes vBytes;
    png_structp pPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop pInfo = png_create_info_struct(pPng);
    png_set_write_fn(
        pPng, &vBytes,
        [](png_structp p, png_bytep pData, size_t n) {
            auto* pOut = static_cast<Bytes*>(png_get_io_ptr(p));
            pOut->insert(pOut->end(), pData, pData + n);
        },
        nullptr);
    png_set_IHDR(pPng, pInfo, 2, 1, 16, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(pPng, pInfo);
    const uint8_t vRow[] = {100, 100, 200, 190};  // 100 * 257, and just below 200.75 * 256
    png_write_row(pPng, vRow);
    png_write_end(pPng, pInfo);
    png_destroy_write_struct(&pPng, &pInfo);
    const Raster back = ReadPng(vBytes, "deep.png");
    EXPECT_EQ(100, back.vSamples[0]);
    EXPECT_NEAR(200, back.vSamples[3], 1);
}

TEST(ReadPng, RefusesWhatIsNone)
{
    Raster rgb;
    rgb.Resize(16, 16, 3);
    Bytes vBytes = WritePng(rgb);
    EXPECT_THROW(ReadPng(Bytes(vBytes.begin(), vBytes.begin() + 40), "cut.png"), BurstError);
    vBytes[0] = 0;
    EXPECT_THROW(ReadPng(vBytes, "none.png"), BurstError);
}

}  // namespace vkr::tool
