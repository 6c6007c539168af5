#include "burst/read_burst.h"

#include <utility>

#include "burst/stop_watch.h"

namespace vkr::tool {

namespace {

Frame ReadFrame(const BurstChoice& choice, const Bytes& vFile, const std::string& sName, Remarks& remarks)
{
    if (choice.IsRaw()) {
        return ReadRaw(vFile, choice.rawSize.nWidth, choice.rawSize.nHeight, choice.bCrFirst, sName);
    }
    std::string sWarning;
    StoredFrame stored = ReadPicture(vFile, sName, sWarning);
    if (!sWarning.empty()) remarks.Say("%s", sWarning.c_str());
    if (stored.nStoredWidth != stored.frame.nWidth || stored.nStoredHeight != stored.frame.nHeight) {
        remarks.Say("%s: cut from %dx%d to even sides, %dx%d", sName.c_str(), stored.nStoredWidth, stored.nStoredHeight,
                    stored.frame.nWidth, stored.frame.nHeight);
    }
    return std::move(stored.frame);
}

Photo ReadPhoto(const BurstChoice& choice, const std::string& sName, Remarks& remarks)
{
    Photo photo;
    photo.sName = sName;
    const size_t nRaw = RawFrameBytes(choice.rawSize.nWidth, choice.rawSize.nHeight);
    photo.vFile = ReadWholeFile(sName, choice.IsRaw() ? nRaw : kMostPictureBytes);
    photo.frame = ReadFrame(choice, photo.vFile, sName, remarks);
    if (!choice.IsRaw()) photo.info = ReadPhotoInfo(photo.vFile);
    return photo;
}

void SayBurst(const PhotoBurst& burst, Remarks& remarks)
{
    for (int k = 0; k < static_cast<int>(burst.vPhotos.size()); ++k) {
        const Photo& photo = burst.vPhotos[static_cast<size_t>(k)];
        remarks.Say("  %d: %s, mean luma %.0f%s%s%s", k, photo.sName.c_str(), photo.light.fMeanLuma,
                    photo.info.sExposure.empty() ? "" : ", ", photo.info.sExposure.c_str(),
                    k == burst.nReference ? ", reference" : "");
    }
}

}  // namespace

PhotoBurst ReadBurst(const BurstChoice& choice, Remarks& remarks)
{
    const StopWatch watch;
    std::vector<Photo> vPhotos;
    for (const std::string& sName : choice.vImages) vPhotos.push_back(ReadPhoto(choice, sName, remarks));
    PhotoBurst burst = ArrangeBurst(std::move(vPhotos), choice.nReference);
    const Size size = burst.FrameSize();
    remarks.Say("read %zu frames of %dx%d in %d ms, darkest first by %s", burst.vPhotos.size(), size.nWidth,
                size.nHeight, watch.Ms(), burst.order.bByExif ? "EXIF exposure" : "mean luma");
    SayBurst(burst, remarks);
    return burst;
}

}  // namespace vkr::tool
