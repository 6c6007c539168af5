#pragma once

#include <string>

#include "pictures/whole_file.h"

namespace vkr::tool {

// What this build can not do with metadata, for a remark; null where it can do all.
const char* MetadataGap();

// What a picture file tells about how it was taken.
struct PhotoInfo {
    double fExposure = 0;   // seconds * ISO / aperture^2, a missing aperture or ISO counting as 1; 0: no time given
    std::string sExposure;  // "1/30 s f/2.8 ISO 100", as far as known
    int nOrientation = 1;   // EXIF 1 .. 8; 1 is upright
};

// Never fails: a file without readable EXIF gives the defaults.
PhotoInfo ReadPhotoInfo(const Bytes& vPicture);

// How the frames lie, for the face search: quarter turns, 0 .. 3, from a stored picture to an upright one. Mirrored
// pictures count as what they mirror.
inline int QuarterTurns(int nExifOrientation)
{
    constexpr int vTurns[] = {0, 0, 0, 2, 2, 1, 1, 3, 3};
    return nExifOrientation >= 1 && nExifOrientation <= 8 ? vTurns[nExifOrientation] : 0;
}

// The JPEG or PNG with the EXIF, XMP and IPTC of another picture file, less its thumbnails, with the size w x h and
// that orientation wherever they were told. A file without any, or with what can not be read, gives the picture as it
// is.
Bytes WithMetadataOf(const Bytes& vSource, const Bytes& vPicture, int w, int h, int nOrientation);

}  // namespace vkr::tool
