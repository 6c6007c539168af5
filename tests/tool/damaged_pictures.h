#pragma once

#include <cstdint>
#include <string>

#include "pictures/picture_io.h"

namespace vkr::tool {

enum class JpegForm { kBaseline, kProgressive, kRestarts, kSeparateScans };

// The frame as the reference encoder writes it in one of the ways that files come in, 4:2:0 or 4:4:4 of the same
// chroma.
Bytes EncodeJpeg(const Frame& frame, JpegForm form, bool bFullChroma = false);

// Where the n-th marker of that code (0xDA: a scan) stands; the file's size if there is none.
size_t MarkerPlace(const Bytes& vJpeg, uint8_t nCode, int n = 0);

struct DamagedPicture {
    std::string sName;  // "7_progressive_cut.jpg"
    Bytes vWhole, vDamaged;
    bool bCut = false;  // else one to three bits are wrong
};

// One of any number of cases, the same for the same number.
DamagedPicture MakeDamagedPicture(const Frame& frame, unsigned nCase);

}  // namespace vkr::tool
