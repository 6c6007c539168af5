#include "burst/read_burst.h"

#include <utility>

#include "burst/stop_watch.h"
#include "pictures/colour_profile.h"
#include "pictures/exif_io.h"

namespace vkr::tool {

namespace {

void ReadFrame(const BurstChoice& choice, Photo& photo, Remarks& remarks)
{
    const Bytes& vFile = photo.vFile;
    const std::string& sName = photo.sName;
    if (choice.IsRaw()) {
        photo.frame = ReadRaw(vFile, choice.rawSize.nWidth, choice.rawSize.nHeight, choice.bCrFirst, sName);
        return;
    }
    std::string sWarning;
    StoredFrame stored = ReadPicture(vFile, sName, sWarning);
    if (!sWarning.empty()) remarks.Say("%s", sWarning.c_str());
    if (stored.nStoredWidth != stored.frame.nWidth || stored.nStoredHeight != stored.frame.nHeight) {
        remarks.Say("%s: cut from %dx%d to even sides, %dx%d", sName.c_str(), stored.nStoredWidth, stored.nStoredHeight,
                    stored.frame.nWidth, stored.frame.nHeight);
    }
    photo.frame = std::move(stored.frame);
    photo.vProfile = std::move(stored.vProfile);
}

Photo ReadPhoto(const BurstChoice& choice, const std::string& sName, Remarks& remarks)
{
    Photo photo;
    photo.sName = sName;
    const size_t nRaw = RawFrameBytes(choice.rawSize.nWidth, choice.rawSize.nHeight);
    photo.vFile = ReadWholeFile(sName, choice.IsRaw() ? nRaw : kMostPictureBytes);
    ReadFrame(choice, photo, remarks);
    if (!choice.IsRaw()) photo.info = ReadPhotoInfo(photo.vFile);
    return photo;
}

// All frames mean by their samples what the reference means.
void MatchColours(PhotoBurst& burst, Remarks& remarks)
{
    const Bytes vWanted = burst.Reference().vProfile;
    for (Photo& photo : burst.vPhotos) {
        if (MeanTheSame(photo.vProfile, vWanted)) continue;
        const bool bConverted = ConvertColours(photo.vProfile, vWanted, photo.frame);
        remarks.Say(bConverted ? "%s: colours converted from %s to %s, as the reference has them"
                               : "%s: colours taken as they are: a profile, %s or %s, can not be used",
                    photo.sName.c_str(), ProfileName(photo.vProfile).c_str(), ProfileName(vWanted).c_str());
        photo.vProfile = vWanted;
    }
}

// A camera that looks up or down takes its side for a guess; what is stored lies one way all the same.
void SayTurned(const PhotoBurst& burst, Remarks& remarks)
{
    const int nWanted = burst.Reference().info.nOrientation;
    for (const Photo& photo : burst.vPhotos) {
        if (photo.info.nOrientation == nWanted) continue;
        remarks.Say("%s: EXIF orientation %d, the reference has %d; taken as it is stored, like the reference",
                    photo.sName.c_str(), photo.info.nOrientation, nWanted);
    }
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
    if (MetadataGap() != nullptr && !choice.IsRaw()) remarks.Say("%s", MetadataGap());
    for (const std::string& sName : choice.vImages) vPhotos.push_back(ReadPhoto(choice, sName, remarks));
    PhotoBurst burst = ArrangeBurst(std::move(vPhotos), choice.nReference);
    const Size size = burst.FrameSize();
    remarks.Say("read %zu frames of %dx%d in %d ms, darkest first by %s", burst.vPhotos.size(), size.nWidth,
                size.nHeight, watch.Ms(), burst.order.bByExif ? "EXIF exposure" : "mean luma");
    SayBurst(burst, remarks);
    SayTurned(burst, remarks);
    MatchColours(burst, remarks);
    return burst;
}

}  // namespace vkr::tool
