#pragma once

#include <string>

#include "pictures/picture_io.h"

namespace vkr::tool {

// One channel at its own size. Rows are nStride apart: the decoder writes whole blocks, of which nWidth samples count.
struct JpegPlane {
    int nWidth = 0, nStride = 0;
    Bytes vSamples;

    const uint8_t* Row(int y) const { return vSamples.data() + static_cast<size_t>(y) * nStride; }
};

// What a JPEG holds: Y, Cb and Cr as they are stored, Y alone, or R, G, B.
struct DecodedJpeg {
    int nWidth = 0, nHeight = 0;
    int nPlanes = 0;             // 3 or 1; 0: rgb has it
    int nStepX = 0, nStepY = 0;  // chroma samples for every four of luma each way: 4, 2 or 1
    JpegPlane vPlanes[3];
    Raster rgb;
    Bytes vProfile;  // ICC, whole; else empty
};

// A picture is given only if all of it was decoded. BurstError, with sName in front, for a file that is cut or damaged
// where that can be seen: data that end too early or are left over, codes that do not exist, restart marks out of
// order, a channel or (in progressive files) a coefficient that no scan brings. sWarning receives, in one line, what
// the decoder complains about although nothing is missing; a file that lacks nothing but its end mark is such a case.
DecodedJpeg DecodeJpeg(const Bytes& vBytes, const std::string& sName, std::string& sWarning);

}  // namespace vkr::tool
