#include "pictures/exif_io.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <exiv2/exiv2.hpp>

namespace vkr::tool {

namespace {

// Exiv2 writes its complaints about odd metadata to standard error; they are none of the user's business here.
void KeepExiv2Quiet()
{
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
}

// Opened and read; throws Exiv2's errors.
auto OpenPhoto(const Bytes& vPicture)
{
    KeepExiv2Quiet();
    auto photo = Exiv2::ImageFactory::open(vPicture.data(), static_cast<long>(vPicture.size()));
    photo->readMetadata();
    return photo;
}

// 0 when the tag is missing or makes no sense.
double Number(const Exiv2::ExifData& exif, const char* pTag)
{
    const auto tag = exif.findKey(Exiv2::ExifKey(pTag));
    if (tag == exif.end() || tag->count() == 0) return 0;
    const double fValue = tag->toFloat();
    return std::isfinite(fValue) && fValue > 0 ? fValue : 0;
}

std::string ExposureWords(double fTime, double fAperture, double fIso)
{
    char szTime[32], szAperture[32] = "", szIso[32] = "";
    if (fTime < 0.3) {
        std::snprintf(szTime, sizeof(szTime), "1/%.0f s", 1 / fTime);
    } else {
        std::snprintf(szTime, sizeof(szTime), "%.3g s", fTime);
    }
    if (fAperture > 0) std::snprintf(szAperture, sizeof(szAperture), " f/%.3g", fAperture);
    if (fIso > 0) std::snprintf(szIso, sizeof(szIso), " ISO %.0f", fIso);
    return std::string(szTime) + szAperture + szIso;
}

void TakeExposure(const Exiv2::ExifData& exif, PhotoInfo& info)
{
    const double fTime = Number(exif, "Exif.Photo.ExposureTime");
    const double fAperture = Number(exif, "Exif.Photo.FNumber");
    const double fIso = Number(exif, "Exif.Photo.ISOSpeedRatings");
    if (fTime <= 0) return;
    info.fExposure = fTime * (fIso > 0 ? fIso : 1) / (fAperture > 0 ? fAperture * fAperture : 1);
    info.sExposure = ExposureWords(fTime, fAperture, fIso);
}

// Only where the tag is there already: metadata that never told its size do not start to.
template <class Key, class Data>
void Replace(Data& data, const char* pTag, int nValue)
{
    const auto tag = data.findKey(Key(pTag));
    if (tag != data.end()) tag->setValue(std::to_string(nValue));
}

void CopyExif(Exiv2::ExifData exif, int w, int h, int nOrientation, Exiv2::Image& target)
{
    using Key = Exiv2::ExifKey;
    Exiv2::ExifThumb(exif).erase();
    Replace<Key>(exif, "Exif.Photo.PixelXDimension", w);
    Replace<Key>(exif, "Exif.Photo.PixelYDimension", h);
    Replace<Key>(exif, "Exif.Image.ImageWidth", w);
    Replace<Key>(exif, "Exif.Image.ImageLength", h);
    Replace<Key>(exif, "Exif.Image.Orientation", nOrientation);
    target.setExifData(exif);
}

void CopyXmp(Exiv2::XmpData xmp, int w, int h, int nOrientation, Exiv2::Image& target)
{
    using Key = Exiv2::XmpKey;
    for (auto tag = xmp.begin(); tag != xmp.end();) {
        tag = tag->key().rfind("Xmp.xmp.Thumbnails", 0) == 0 ? xmp.erase(tag) : tag + 1;
    }
    Replace<Key>(xmp, "Xmp.exif.PixelXDimension", w);
    Replace<Key>(xmp, "Xmp.exif.PixelYDimension", h);
    Replace<Key>(xmp, "Xmp.tiff.ImageWidth", w);
    Replace<Key>(xmp, "Xmp.tiff.ImageLength", h);
    Replace<Key>(xmp, "Xmp.tiff.Orientation", nOrientation);
    target.setXmpData(xmp);
}

Bytes BytesOf(Exiv2::BasicIo& io)
{
    Bytes vBytes(io.size());
    io.open();
    io.seek(0, Exiv2::BasicIo::beg);
    const long nRead = io.read(vBytes.data(), static_cast<long>(vBytes.size()));
    io.close();
    if (nRead != static_cast<long>(vBytes.size())) vBytes.clear();
    return vBytes;
}

}  // namespace

const char* MetadataGap()
{
    return nullptr;
}

PhotoInfo ReadPhotoInfo(const Bytes& vPicture)
{
    PhotoInfo info;
    try {
        const auto photo = OpenPhoto(vPicture);
        TakeExposure(photo->exifData(), info);
        const double fOrientation = Number(photo->exifData(), "Exif.Image.Orientation");
        if (fOrientation >= 1 && fOrientation <= 8) info.nOrientation = static_cast<int>(fOrientation);
    } catch (const std::exception&) {
        // no usable EXIF is no EXIF
    }
    return info;
}

Bytes WithMetadataOf(const Bytes& vSource, const Bytes& vPicture, int w, int h, int nOrientation)
{
    try {
        const auto source = OpenPhoto(vSource);
        if (source->exifData().empty() && source->xmpData().empty() && source->iptcData().empty()) return vPicture;
        const auto target = OpenPhoto(vPicture);
        CopyExif(source->exifData(), w, h, nOrientation, *target);
        CopyXmp(source->xmpData(), w, h, nOrientation, *target);
        target->setIptcData(source->iptcData());
        target->writeMetadata();
        Bytes vBytes = BytesOf(target->io());
        return vBytes.empty() ? vPicture : vBytes;
    } catch (const std::exception&) {
        return vPicture;
    }
}

}  // namespace vkr::tool
