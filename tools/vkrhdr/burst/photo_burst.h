#pragma once

#include <string>
#include <vector>

#include "burst/burst_order.h"
#include "burst/burst_ratios.h"
#include "face/face_box.h"
#include "pictures/exif_io.h"
#include "pictures/picture_io.h"
#include "pictures/picture_size.h"

namespace vkr::tool {

// One frame in memory and what is known about it. Whoever has frames from elsewhere fills in the name (for lines about
// it), the frame and, as far as known, the info.
struct Photo {
    std::string sName;
    Bytes vFile;     // as it came, for the metadata of a result; may be empty
    Bytes vProfile;  // ICC; empty: sRGB
    Frame frame;
    PhotoInfo info;
    FrameLight light;  // ArrangeBurst fills it
};

// Frames of one size and chroma order, darkest first.
struct PhotoBurst {
    std::vector<Photo> vPhotos;   // 1 .. 8
    BurstOrder order;             // where each stood among those that were given
    int nReference = 0;           // in vPhotos: the one whose geometry and light the result follows
    std::vector<FaceBox> vFaces;  // that the user named, frame pixels
    int nFaceSource = 0;          // of the library: 0 network, 1 vFaces; read where bAIMask is set
    int nFirst = 0;               // the darkest's number in order; above 0 once darker ones were left out

    const Photo& Reference() const { return vPhotos[static_cast<size_t>(nReference)]; }
    Size FrameSize() const { return {vPhotos[0].frame.nWidth, vPhotos[0].frame.nHeight}; }
    bool IsCrFirst() const { return vPhotos[0].frame.bCrFirst; }
    std::vector<std::string> Names() const;
    std::vector<RatioFrame> RatioFrames() const;  // they point into vPhotos
};

// Puts frames, given in any order, in the order of their light and chooses the reference: nReference counts in that
// order, darkest 0; below 0 the (lower) middle one. BurstError, which names the pictures, when they are not 1 .. 8 of
// one size and chroma order, or when there is no such reference.
PhotoBurst ArrangeBurst(std::vector<Photo> vPhotos, int nReference);

}  // namespace vkr::tool
