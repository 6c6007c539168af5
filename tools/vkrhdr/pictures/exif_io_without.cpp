// Takes the place of exif_io.cpp where the program is built without Exiv2: every picture is one without metadata.
#include "pictures/exif_io.h"

namespace vkr::tool {

const char* MetadataGap()
{
    return "built without Exiv2: exposure times and orientation are not read, metadata is not kept";
}

PhotoInfo ReadPhotoInfo(const Bytes& /*vPicture*/)
{
    return {};
}

Bytes WithMetadataOf(const Bytes& /*vSource*/, const Bytes& vPicture, int /*w*/, int /*h*/, int /*nOrientation*/)
{
    return vPicture;
}

}  // namespace vkr::tool
