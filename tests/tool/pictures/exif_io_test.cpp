#include "pictures/exif_io.h"

#include <gtest/gtest.h>

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

TEST(WithMetadataOf, CarriesTagsAndProfileWithoutWhatIsStale)
{
    Tags tags{"1/50", "", "", 8};
    tags.bStale = tags.bProfile = true;
    const Bytes vSource = WithTags(PlainJpeg(), tags);
    ASSERT_TRUE(HasThumbnail(vSource));
    const Bytes vPlain = PlainJpeg();
    const Bytes vResult = WithMetadataOf(vSource, vPlain, 64, 48);
    EXPECT_EQ("1/50", TagOf(vResult, "Exif.Photo.ExposureTime"));
    EXPECT_EQ("Maker", TagOf(vResult, "Exif.Image.Make"));
    EXPECT_EQ("8", TagOf(vResult, "Exif.Image.Orientation"));
    EXPECT_EQ("64", TagOf(vResult, "Exif.Photo.PixelXDimension"));
    EXPECT_EQ("48", TagOf(vResult, "Exif.Photo.PixelYDimension"));
    EXPECT_FALSE(HasThumbnail(vResult));
    EXPECT_EQ(256u, ProfileSize(vResult));
    std::string sWarning;
    EXPECT_EQ(ReadJpeg(vPlain, "", sWarning).frame.vY, ReadJpeg(vResult, "", sWarning).frame.vY);
}

TEST(WithMetadataOf, LeavesTheJpegAloneWithoutMetadata)
{
    const Bytes vPlain = PlainJpeg();
    EXPECT_EQ(vPlain, WithMetadataOf({1, 2, 3}, vPlain, 64, 48));
    EXPECT_EQ("", TagOf(WithMetadataOf(vPlain, vPlain, 64, 48), "Exif.Photo.PixelXDimension"));
}

}  // namespace vkr::tool
