#include "tagged_jpeg.h"

#include <cstring>
#include <exiv2/exiv2.hpp>

namespace vkr::tool {

namespace {

auto Open(const Bytes& vJpeg)
{
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    auto photo = Exiv2::ImageFactory::open(vJpeg.data(), static_cast<long>(vJpeg.size()));
    photo->readMetadata();
    return photo;
}

// No profile that anybody could use, but with the marks of one for R, G, B.
Exiv2::DataBuf FakeProfile()
{
    Exiv2::DataBuf profile(256);
    std::memset(profile.pData_, 0, 256);
    profile.pData_[2] = 1;  // its length, 256, big-endian
    std::memcpy(profile.pData_ + 16, "RGB ", 4);
    return profile;
}

}  // namespace

Bytes WithTags(const Bytes& vJpeg, const Tags& tags)
{
    auto photo = Open(vJpeg);
    Exiv2::ExifData exif;
    const auto put = [&](const char* pKey, const std::string& sValue, Exiv2::TypeId type) {
        if (sValue.empty()) return;
        const auto value = Exiv2::Value::create(type);
        value->read(sValue);
        exif.add(Exiv2::ExifKey(pKey), value.get());
    };
    put("Exif.Photo.ExposureTime", tags.sTime, Exiv2::unsignedRational);
    put("Exif.Photo.FNumber", tags.sAperture, Exiv2::unsignedRational);
    put("Exif.Photo.ISOSpeedRatings", tags.sIso, Exiv2::unsignedShort);
    put("Exif.Image.Make", "Maker", Exiv2::asciiString);
    if (tags.nOrientation > 0) exif["Exif.Image.Orientation"] = static_cast<uint16_t>(tags.nOrientation);
    if (tags.bStale) {
        exif["Exif.Photo.PixelXDimension"] = static_cast<uint32_t>(9999);
        exif["Exif.Photo.PixelYDimension"] = static_cast<uint32_t>(9999);
        Exiv2::ExifThumb(exif).setJpegThumbnail(vJpeg.data(), 600);
    }
    photo->setExifData(exif);
    Exiv2::DataBuf profile = FakeProfile();
    if (tags.bProfile) photo->setIccProfile(profile);
    photo->writeMetadata();
    Exiv2::BasicIo& io = photo->io();
    Bytes vBytes(io.size());
    io.open();
    io.seek(0, Exiv2::BasicIo::beg);
    io.read(vBytes.data(), static_cast<long>(vBytes.size()));
    io.close();
    return vBytes;
}

std::string TagOf(const Bytes& vJpeg, const std::string& sKey)
{
    const auto photo = Open(vJpeg);
    const auto tag = photo->exifData().findKey(Exiv2::ExifKey(sKey));
    return tag == photo->exifData().end() ? std::string() : tag->toString();
}

bool HasThumbnail(const Bytes& vJpeg)
{
    const auto photo = Open(vJpeg);
    Exiv2::ExifData exif = photo->exifData();
    return Exiv2::ExifThumb(exif).copy().size_ > 0;
}

size_t ProfileSize(const Bytes& vJpeg)
{
    const auto photo = Open(vJpeg);
    return photo->iccProfileDefined() ? static_cast<size_t>(photo->iccProfile()->size_) : 0;
}

}  // namespace vkr::tool
