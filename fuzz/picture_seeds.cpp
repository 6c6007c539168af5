#include <cstdio>  // jpeglib.h needs it

#include <jpeglib.h>
#include <png.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "fuzz_check.h"

// Writes the corpus of picture_fuzz: a small drawn picture in the ways that files store one.   picture_seeds FOLDER

namespace {

constexpr int kWidth = 27, kHeight = 18;

using Bytes = std::vector<uint8_t>;

// A slope, a disc and a few bars.
Bytes Draw(int nChannels)
{
    Bytes vSamples;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool bDisc = (x - 9) * (x - 9) + (y - 8) * (y - 8)<30, bBar = x> 18 && x % 3 == 0;
            for (int c = 0; c < nChannels; ++c) {
                vSamples.push_back(static_cast<uint8_t>(bDisc ? 40 + 70 * c : bBar ? 230 - 60 * c : 6 * x + 5 * y));
            }
        }
    }
    return vSamples;
}

void Write(const std::string& sPath, const uint8_t* pBytes, size_t nBytes)
{
    std::ofstream file(sPath, std::ios::binary);
    file.write(reinterpret_cast<const char*>(pBytes), static_cast<std::streamsize>(nBytes));
    FUZZ_CHECK(file.good());
}

// EXIF of one folder: an orientation and an exposure time of 1/30 s.
const Bytes& ExifMarker()
{
    static const Bytes vMarker = [] {
        const std::string sTiff(
            "Exif\0\0II*\0\x08\0\0\0\x02\0"
            "\x12\x01\x03\0\x01\0\0\0\x06\0\0\0"
            "\x69\x87\x04\0\x01\0\0\0\x26\0\0\0"
            "\0\0\0\0"
            "\x01\0\x9A\x82\x05\0\x01\0\0\0\x38\0\0\0\0\0\0\0"
            "\x01\0\0\0\x1E\0\0\0",
            6 + 8 + 2 + 24 + 4 + 18 + 8);
        return Bytes(sTiff.begin(), sTiff.end());
    }();
    return vMarker;
}

struct JpegForm {
    const char* pName;
    J_COLOR_SPACE stored;
    int nAcross, nDown;  // sampling of the first channel
    bool bProgressive, bArithmetic;
    int nRestart;  // blocks of minimum coded units
    bool bExif;
};

void WriteJpegForm(const std::string& sFolder, const JpegForm& form)
{
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    uint8_t* pBytes = nullptr;
    unsigned long nBytes = 0;
    jpeg_mem_dest(&jpeg, &pBytes, &nBytes);
    jpeg.image_width = kWidth;
    jpeg.image_height = kHeight;
    jpeg.in_color_space = form.stored == JCS_YCbCr ? JCS_RGB : form.stored;
    jpeg.input_components = form.stored == JCS_GRAYSCALE ? 1 : form.stored == JCS_CMYK ? 4 : 3;
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, form.stored);
    jpeg_set_quality(&jpeg, 60, TRUE);
    jpeg.comp_info[0].h_samp_factor = form.nAcross;
    jpeg.comp_info[0].v_samp_factor = form.nDown;
    jpeg.restart_interval = static_cast<unsigned>(form.nRestart);
    jpeg.arith_code = form.bArithmetic;
    if (form.bProgressive) jpeg_simple_progression(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    const Bytes& vExif = ExifMarker();
    if (form.bExif) jpeg_write_marker(&jpeg, JPEG_APP0 + 1, vExif.data(), static_cast<unsigned>(vExif.size()));
    Bytes vSamples = Draw(jpeg.input_components);
    for (int y = 0; y < kHeight; ++y) {
        JSAMPROW pRow = vSamples.data() + static_cast<size_t>(y) * kWidth * jpeg.input_components;
        jpeg_write_scanlines(&jpeg, &pRow, 1);
    }
    jpeg_finish_compress(&jpeg);
    Write(sFolder + "/jpeg_" + form.pName, pBytes, nBytes);
    jpeg_destroy_compress(&jpeg);
    std::free(pBytes);
}

struct PngForm {
    const char* pName;
    int nColourType, nDepth;
    bool bInterlaced, bProfile;
};

void WritePngForm(const std::string& sFolder, const PngForm& form)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    Bytes vFile;
    png_set_write_fn(
        png, &vFile,
        [](png_structp p, png_bytep pBytes, size_t nBytes) {
            Bytes* pFile = static_cast<Bytes*>(png_get_io_ptr(p));
            pFile->insert(pFile->end(), pBytes, pBytes + nBytes);
        },
        nullptr);
    png_set_IHDR(png, info, kWidth, kHeight, form.nDepth, form.nColourType,
                 form.bInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    const png_color vPalette[4] = {{0, 0, 0}, {200, 40, 10}, {30, 190, 60}, {250, 250, 240}};
    const png_byte vAlpha[4] = {255, 128, 0, 255};
    if (form.nColourType == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(png, info, vPalette, 4);
        png_set_tRNS(png, info, vAlpha, 4, nullptr);
    }
    if (form.bProfile) png_set_gAMA_fixed(png, info, 55000);
    png_write_info(png, info);
    const size_t nRowBytes = png_get_rowbytes(png, info);
    Bytes vSamples = Draw(static_cast<int>((nRowBytes + kWidth - 1) / kWidth));
    if (form.nColourType == PNG_COLOR_TYPE_PALETTE && form.nDepth == 8) {
        for (uint8_t& n : vSamples) n &= 3;
    }
    vSamples.resize(nRowBytes * kHeight);
    std::vector<png_bytep> vRows;
    for (int y = 0; y < kHeight; ++y) vRows.push_back(vSamples.data() + y * nRowBytes);
    png_write_image(png, vRows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    Write(sFolder + "/png_" + form.pName, vFile.data(), vFile.size());
}

}  // namespace

int main(int argc, char** argv)
{
    FUZZ_CHECK(argc == 2);
    const JpegForm vJpegs[] = {
        {"420_exif", JCS_YCbCr, 2, 2, false, false, 0, true},   {"422", JCS_YCbCr, 2, 1, false, false, 0, false},
        {"444", JCS_YCbCr, 1, 1, false, false, 0, false},       {"411", JCS_YCbCr, 4, 1, false, false, 0, false},
        {"440", JCS_YCbCr, 1, 2, false, false, 0, false},       {"grey", JCS_GRAYSCALE, 1, 1, false, false, 0, false},
        {"rgb", JCS_RGB, 1, 1, false, false, 0, false},         {"cmyk", JCS_CMYK, 1, 1, false, false, 0, false},
        {"restart", JCS_YCbCr, 2, 2, false, false, 1, false},   {"arithmetic", JCS_YCbCr, 2, 2, false, true, 0, false},
        {"progressive", JCS_YCbCr, 2, 2, true, false, 0, true},
    };
    for (const JpegForm& form : vJpegs) WriteJpegForm(argv[1], form);
    const PngForm vPngs[] = {
        {"rgb", PNG_COLOR_TYPE_RGB, 8, false, true},
        {"rgb16", PNG_COLOR_TYPE_RGB, 16, false, false},
        {"alpha", PNG_COLOR_TYPE_RGB_ALPHA, 8, true, false},
        {"grey_alpha16", PNG_COLOR_TYPE_GRAY_ALPHA, 16, false, true},
        {"grey1", PNG_COLOR_TYPE_GRAY, 1, false, false},
        {"palette", PNG_COLOR_TYPE_PALETTE, 8, true, false},
        {"palette2", PNG_COLOR_TYPE_PALETTE, 2, false, true},
    };
    for (const PngForm& form : vPngs) WritePngForm(argv[1], form);
}
