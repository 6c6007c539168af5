#include "damaged_pictures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include <jpeglib.h>

#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

constexpr int kSeparate[][4] = {{0, 0, 63, 0}, {1, 0, 63, 0}, {2, 0, 63, 0}};  // channel, first and last coefficient

void SetForm(jpeg_compress_struct& info, JpegForm form, jpeg_scan_info (&vScans)[3])
{
    if (form == JpegForm::kProgressive) jpeg_simple_progression(&info);
    if (form == JpegForm::kRestarts) info.restart_interval = 3;
    if (form != JpegForm::kSeparateScans) return;
    for (int i = 0; i < 3; ++i) {
        vScans[i] = {1, {kSeparate[i][0]}, kSeparate[i][1], kSeparate[i][2], 0, 0};
    }
    info.scan_info = vScans;
    info.num_scans = 3;
}

}  // namespace

Bytes EncodeJpeg(const Frame& frame, JpegForm form, bool bFullChroma)
{
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* pJpeg = nullptr;
    unsigned long nSize = 0;
    jpeg_mem_dest(&info, &pJpeg, &nSize);
    info.image_width = static_cast<JDIMENSION>(frame.nWidth);
    info.image_height = static_cast<JDIMENSION>(frame.nHeight);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 90, TRUE);
    if (bFullChroma) info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 1;
    jpeg_scan_info vScans[3];
    SetForm(info, form, vScans);
    Raster rgb = RgbFromFrame(frame);
    jpeg_start_compress(&info, TRUE);
    for (int y = 0; y < rgb.nHeight; ++y) {
        JSAMPROW pRow = rgb.Row(y);
        jpeg_write_scanlines(&info, &pRow, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    Bytes vJpeg(pJpeg, pJpeg + nSize);
    std::free(pJpeg);
    return vJpeg;
}

size_t MarkerPlace(const Bytes& vJpeg, uint8_t nCode, int n)
{
    for (size_t i = 0; i + 1 < vJpeg.size(); ++i) {
        if (vJpeg[i] == 0xFF && vJpeg[i + 1] == nCode && n-- == 0) return i;
    }
    return vJpeg.size();
}

DamagedPicture MakeDamagedPicture(const Frame& frame, unsigned nCase)
{
    static const char* const vNames[] = {"baseline", "progressive", "restarts", "separate", "png"};
    std::mt19937 rng(nCase);
    const unsigned nKind = nCase % 5;
    DamagedPicture picture;
    picture.bCut = nCase / 5 % 2 == 0;
    picture.sName = std::to_string(nCase) + "_" + vNames[nKind] + (picture.bCut ? "_cut" : "_flipped") +
                    (nKind == 4 ? ".png" : ".jpg");
    picture.vWhole = nKind == 4 ? WritePng(RgbFromFrame(frame))
                                : EncodeJpeg(frame, static_cast<JpegForm>(nKind), nCase / 10 % 2 == 1);
    Bytes& vBytes = picture.vDamaged = picture.vWhole;
    if (picture.bCut) {
        // every other one at the end of a part, where nothing is left over that could complain
        const size_t nScan = MarkerPlace(vBytes, 0xDA, static_cast<int>(1 + rng() % 9));
        vBytes.resize(nCase / 20 % 2 == 0 && nScan < vBytes.size() ? nScan : 3 + rng() % (vBytes.size() - 3));
    } else {
        for (unsigned k = 0; k <= nCase / 10 % 3; ++k) {
            vBytes[4 + rng() % (vBytes.size() - 4)] ^= static_cast<uint8_t>(1u << rng() % 8);
        }
    }
    return picture;
}

}  // namespace vkr::tool
