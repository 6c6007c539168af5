#pragma once

#include <string>
#include <vector>

#include "burst/burst_order.h"
#include "burst/burst_ratios.h"
#include "face/face_box.h"
#include "library/engine.h"
#include "pictures/exif_io.h"
#include "pictures/picture_io.h"
#include "pictures/picture_size.h"

namespace CLI {
class App;
}

namespace vkr::tool {

// Which pictures make the burst.
struct BurstOptions {
    std::vector<std::string> vImages;
    std::string sRaw, sSize;  // both empty, or nv12 or nv21 and WxH
    int nReference = -1;      // in the order of brightness; below 0: the middle one

    bool IsRaw() const { return !sRaw.empty(); }
    bool IsCrFirst() const { return sRaw == "nv21"; }
};

void DefineBurst(CLI::App& command, BurstOptions& options);

// UsageError for all that can be refused before a picture is read.
void CheckBurst(const BurstOptions& options);

struct Photo {
    std::string sName;
    Bytes vFile;  // as it came, for its EXIF
    Frame frame;
    PhotoInfo info;
    FrameLight light;
};

// Frames of one size, darkest first.
struct PhotoBurst {
    std::vector<Photo> vPhotos;
    int nReference = 0;
    std::vector<FaceBox> vFaces;  // that the user named, frame pixels
    int nFaceSource = 0;          // of the library: 0 network, 1 vFaces; read where bAIMask is set
    int nFirst = 0;  // the darkest's number among those that were read; above 0 once darker ones were left out

    const Photo& Reference() const { return vPhotos[static_cast<size_t>(nReference)]; }
    Size FrameSize() const { return {vPhotos[0].frame.nWidth, vPhotos[0].frame.nHeight}; }
    std::vector<std::string> Names() const;
    std::vector<RatioFrame> RatioFrames() const;
};

// Says on standard error what was read, and how it is ordered.
PhotoBurst ReadBurst(const BurstOptions& options);

// The burst through the library; the frames' size and chroma order.
Frame RenderBurst(Engine& engine, const PhotoBurst& burst);

}  // namespace vkr::tool
