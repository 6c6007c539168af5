#include "tagged_jpeg.h"

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
    if (tags.bStale) {
        photo->xmpData()["Xmp.dc.creator"] = "Author";
        photo->xmpData()["Xmp.tiff.Orientation"] = tags.nOrientation;
        photo->iptcData()["Iptc.Application2.City"] = "Town";
    }
    photo->writeMetadata();
    Exiv2::BasicIo& io = photo->io();
    Bytes vBytes(io.size());
    io.open();
    io.seek(0, Exiv2::BasicIo::beg);
    io.read(vBytes.data(), static_cast<long>(vBytes.size()));
    io.close();
    return vBytes;
}

std::string TagOf(const Bytes& vPicture, const std::string& sKey)
{
    const auto photo = Open(vPicture);
    const auto find = [](const auto& data, const auto& key) {
        const auto tag = data.findKey(key);
        return tag == data.end() ? std::string() : tag->toString();
    };
    if (sKey.rfind("Xmp.", 0) == 0) return find(photo->xmpData(), Exiv2::XmpKey(sKey));
    if (sKey.rfind("Iptc.", 0) == 0) return find(photo->iptcData(), Exiv2::IptcKey(sKey));
    return find(photo->exifData(), Exiv2::ExifKey(sKey));
}

bool HasThumbnail(const Bytes& vJpeg)
{
    const auto photo = Open(vJpeg);
    Exiv2::ExifData exif = photo->exifData();
    return Exiv2::ExifThumb(exif).copy().size_ > 0;
}

}  // namespace vkr::tool
