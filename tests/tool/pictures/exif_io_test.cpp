#include "pictures/exif_io.h"

#include <gtest/gtest.h>

#include "pictures/colour_convert.h"
#include "pictures/colour_profile.h"
#include "run_tool.h"
#include "tagged_jpeg.h"

namespace vkr::tool {

namespace {

Bytes PlainJpeg()
{
    return WriteJpeg(DrawnFrames(64, 48)[1], 90);
}

}  // namespace

TEST(ReadPhotoInfo, PutsTimeApertureAndIsoTogether)
{
    const PhotoInfo full = ReadPhotoInfo(WithTags(PlainJpeg(), {"1/50", "4/1", "200", 6}));
    EXPECT_NEAR(0.02 * 200 / 16, full.fExposure, 1e-6);
    EXPECT_EQ("1/50 s f/4 ISO 200", full.sExposure);
    EXPECT_EQ(6, full.nOrientation);
    const PhotoInfo timeOnly = ReadPhotoInfo(WithTags(PlainJpeg(), {"5/2", "", ""}));
    EXPECT_NEAR(2.5, timeOnly.fExposure, 1e-6);
    EXPECT_EQ("2.5 s", timeOnly.sExposure);
    EXPECT_EQ(1, timeOnly.nOrientation);
}

TEST(ReadPhotoInfo, KnowsNothingWithoutUsableExif)
{
    for (const Bytes& vPicture : {PlainJpeg(), WithTags(PlainJpeg(), {"0/1", "4/1", "100", 9}),
                                  WithTags(PlainJpeg(), {"1/0", "", ""}), Bytes{1, 2, 3}, Bytes{}}) {
        const PhotoInfo info = ReadPhotoInfo(vPicture);
        EXPECT_EQ(0, info.fExposure);
        EXPECT_EQ("", info.sExposure);
        EXPECT_EQ(1, info.nOrientation);
    }
}

TEST(WithMetadataOf, CarriesAllKindsWithoutWhatIsStale)
{
    Tags tags{"1/50", "", "", 8};
    tags.bStale = true;
    const Bytes vSource = WithTags(PlainJpeg(), tags);
    ASSERT_TRUE(HasThumbnail(vSource));
    const Bytes vProfile = ProfileOfPrimaries({0.3127, 0.329, 0.68, 0.32, 0.265, 0.69, 0.15, 0.06});
    const Frame frame = DrawnFrames(64, 48)[1];
    const Bytes vJpeg = WriteJpeg(frame, 90, vProfile), vPng = WritePng(RgbFromFrame(frame), false, vProfile);
    const struct {
        const Bytes& vPicture;
        std::string sOrientation;
    } vCases[] = {{vJpeg, "8"}, {vPng, "1"}};
    for (const auto& c : vCases) {
        SCOPED_TRACE(c.sOrientation);
        const Bytes vResult = WithMetadataOf(vSource, c.vPicture, 64, 48, std::stoi(c.sOrientation));
        EXPECT_EQ("1/50", TagOf(vResult, "Exif.Photo.ExposureTime"));
        EXPECT_EQ("Maker", TagOf(vResult, "Exif.Image.Make"));
        EXPECT_EQ("Author", TagOf(vResult, "Xmp.dc.creator"));
        EXPECT_EQ("Town", TagOf(vResult, "Iptc.Application2.City"));
        EXPECT_EQ(c.sOrientation, TagOf(vResult, "Exif.Image.Orientation"));
        EXPECT_EQ(c.sOrientation, TagOf(vResult, "Xmp.tiff.Orientation"));
        EXPECT_EQ("64", TagOf(vResult, "Exif.Photo.PixelXDimension"));
        EXPECT_EQ("48", TagOf(vResult, "Exif.Photo.PixelYDimension"));
        EXPECT_FALSE(HasThumbnail(vResult));
        std::string sWarning;
        const StoredFrame before = ReadPicture(c.vPicture, "", sWarning), after = ReadPicture(vResult, "", sWarning);
        EXPECT_EQ(before.frame.vY, after.frame.vY);
        EXPECT_FALSE(vProfile.empty());
        EXPECT_EQ(vProfile, after.vProfile);
    }
}

TEST(WithMetadataOf, LeavesThePictureAloneWithoutMetadata)
{
    const Bytes vPlain = PlainJpeg();
    EXPECT_EQ(vPlain, WithMetadataOf({1, 2, 3}, vPlain, 64, 48, 1));
    EXPECT_EQ(vPlain, WithMetadataOf(vPlain, vPlain, 64, 48, 1));
}

}  // namespace vkr::tool
