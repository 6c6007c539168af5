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

// Only where the tag is there already: EXIF that never told its size does not start to.
void Replace(Exiv2::ExifData& exif, const char* pTag, int nValue)
{
    const auto tag = exif.findKey(Exiv2::ExifKey(pTag));
    if (tag != exif.end()) *tag = static_cast<uint32_t>(nValue);
}

void CopyExif(Exiv2::ExifData exif, int w, int h, Exiv2::Image& target)
{
    Exiv2::ExifThumb(exif).erase();
    Replace(exif, "Exif.Photo.PixelXDimension", w);
    Replace(exif, "Exif.Photo.PixelYDimension", h);
    Replace(exif, "Exif.Image.ImageWidth", w);
    Replace(exif, "Exif.Image.ImageLength", h);
    target.setExifData(exif);
}

// Only profiles of R, G, B pictures, which the result is too.
void CopyProfile(Exiv2::Image& source, Exiv2::Image& target)
{
    if (!source.iccProfileDefined()) return;
    Exiv2::DataBuf* pProfile = source.iccProfile();
    if (pProfile->size_ > 128 && std::memcmp(pProfile->pData_ + 16, "RGB ", 4) == 0) target.setIccProfile(*pProfile);
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

int QuarterTurns(int nExifOrientation)
{
    switch (nExifOrientation) {
        case 5:
        case 6:
            return 1;
        case 3:
        case 4:
            return 2;
        case 7:
        case 8:
            return 3;
        default:
            return 0;
    }
}

Bytes WithMetadataOf(const Bytes& vSource, const Bytes& vJpeg, int w, int h)
{
    try {
        const auto source = OpenPhoto(vSource);
        const auto target = OpenPhoto(vJpeg);
        CopyExif(source->exifData(), w, h, *target);
        CopyProfile(*source, *target);
        target->writeMetadata();
        Bytes vBytes = BytesOf(target->io());
        return vBytes.empty() ? vJpeg : vBytes;
    } catch (const std::exception&) {
        return vJpeg;
    }
}

}  // namespace vkr::tool
