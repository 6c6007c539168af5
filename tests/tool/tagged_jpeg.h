#pragma once

#include <string>

#include "pictures/picture_io.h"

namespace vkr::tool {

// What a camera would have written into a file; empty texts and 0 leave a tag out.
struct Tags {
    std::string sTime, sAperture, sIso;  // "1/30", "28/10", "100"
    int nOrientation = 0;
    bool bStale = false;  // a wrong picture size and a thumbnail; XMP and IPTC, too
};

// The JPEG with that EXIF, written by the metadata library itself.
Bytes WithTags(const Bytes& vJpeg, const Tags& tags);

// One tag of a JPEG or PNG (EXIF, XMP, IPTC) as text; empty when it is not there.
std::string TagOf(const Bytes& vPicture, const std::string& sKey);

bool HasThumbnail(const Bytes& vJpeg);

}  // namespace vkr::tool
