#pragma once

#include <string>
#include <vector>

#include "burst/photo_burst.h"
#include "pictures/picture_size.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// Which files make the burst.
struct BurstChoice {
    std::vector<std::string> vImages;  // 1 .. 8, in any order
    Size rawSize{0, 0};                // of files that hold the bytes of one frame each; 0x0: JPEG and PNG files
    bool bCrFirst = false;             // chroma of such files: false Cb, Cr (NV12), true Cr, Cb (NV21)
    int nReference = -1;               // as ArrangeBurst takes it

    bool IsRaw() const { return rawSize.nWidth > 0; }
};

// Reads the files and arranges them. Tells what was read, how it is ordered, and what a decoder complained about.
// BurstError, with the file's name, for what can not be read or does not go together.
PhotoBurst ReadBurst(const BurstChoice& choice, Remarks& remarks);

}  // namespace vkr::tool
