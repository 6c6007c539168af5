#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pictures/whole_file.h"

namespace vkr::tool {

// A frame as the library takes it: full-range YCbCr, semi-planar 4:2:0, even sizes, tight rows.
struct Frame {
    int nWidth = 0, nHeight = 0;
    bool bCrFirst = false;  // chroma pairs: false Cb, Cr (NV12), true Cr, Cb (NV21)
    Bytes vY, vUV;          // nWidth * nHeight, and half of that

    void Resize(int w, int h);
};

// Samples of 8 bits, tight rows. 3 channels are R, G, B; 1 is grey; maps may have one per exposure.
struct Raster {
    int nWidth = 0, nHeight = 0, nChannels = 3;
    Bytes vSamples;

    void Resize(int w, int h, int nChannelCount);
    uint8_t* Row(int y) { return vSamples.data() + RowOffset(y); }
    const uint8_t* Row(int y) const { return vSamples.data() + RowOffset(y); }

private:
    size_t RowOffset(int y) const { return static_cast<size_t>(y) * nWidth * nChannels; }
};

// A frame out of a file: an odd width or height loses its last column or row.
struct StoredFrame {
    Frame frame;
    int nStoredWidth = 0, nStoredHeight = 0;
    Bytes vProfile;  // ICC; empty where the file has none
};

enum class PictureKind { kJpeg, kPng, kRaw };

// By the first bytes; anything but the two formats is kRaw.
PictureKind KindOfBytes(const Bytes& vBytes);

// By the extension: .jpg, .jpeg and .png in any case; anything else is kRaw.
PictureKind KindOfPath(const std::string& sPath);

// All readers throw BurstError, with sName in front, on what they can not read.

// 4:2:0 is taken as it is stored, without any conversion; other YCbCr and grey lose chroma resolution alone; R, G, B is
// converted; CMYK is refused, and so is what is not there whole (see jpeg_decoder.h). sWarning receives what the
// decoder complained about although nothing is missing.
StoredFrame ReadJpeg(const Bytes& vBytes, const std::string& sName, std::string& sWarning);

// 4:2:0, the planes as they are; quality 1 .. 100. An empty profile is not written.
Bytes WriteJpeg(const Frame& frame, int nQuality, const Bytes& vProfile = {});

// Any PNG, as 8-bit R, G, B: 16 bits are rounded, transparent parts stand before black. A gamma is brought to that of
// sRGB, unless there is a profile, which then tells what the samples mean.
Raster ReadPng(const Bytes& vBytes, const std::string& sName);

// fast: larger files. Without a profile it says sRGB.
Bytes WritePng(const Raster& raster, bool bFast = false, const Bytes& vProfile = {});

// Exactly one frame of w x h, both even: RawFrameBytes of them.
size_t RawFrameBytes(int w, int h);
Frame ReadRaw(const Bytes& vBytes, int w, int h, bool bCrFirst, const std::string& sName);
Bytes WriteRaw(const Frame& frame);

// A frame in memory out of a JPEG or PNG. sWarning as above; it also tells what of a PNG is lost.
StoredFrame ReadPicture(const Bytes& vBytes, const std::string& sName, std::string& sWarning);

}  // namespace vkr::tool
