#include "pictures/colour_profile.h"

#include <gtest/gtest.h>

#include "pictures/colour_convert.h"
#include "pictures/png_chunks.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {

// The wide primaries of screens, with the white and the curve of sRGB.
Bytes WideProfile()
{
    return ProfileOfPrimaries({0.3127, 0.329, 0.68, 0.32, 0.265, 0.69, 0.15, 0.06});
}

Frame FlatFrame(int nRed, int nGreen, int nBlue)
{
    Raster rgb;
    rgb.Resize(64, 48, 3);
    for (size_t i = 0; i < rgb.vSamples.size(); i += 3) {
        rgb.vSamples[i] = static_cast<uint8_t>(nRed);
        rgb.vSamples[i + 1] = static_cast<uint8_t>(nGreen);
        rgb.vSamples[i + 2] = static_cast<uint8_t>(nBlue);
    }
    return FrameFromRgb(rgb, "");
}

}  // namespace

// The red of sRGB is (234, 51, 35) in Display P3, by published tables.
TEST(ConvertColours, TakesColoursToTheirPlaceAndKeepsGrey)
{
    Frame frame = FlatFrame(255, 0, 0);
    ASSERT_TRUE(ConvertColours({}, WideProfile(), frame));
    const Raster red = RgbFromFrame(frame);
    EXPECT_NEAR(234, red.vSamples[0], 3);
    EXPECT_NEAR(51, red.vSamples[1], 3);
    EXPECT_NEAR(35, red.vSamples[2], 3);
    frame = FlatFrame(90, 90, 90);
    ASSERT_TRUE(ConvertColours(WideProfile(), {}, frame));
    EXPECT_NEAR(90, frame.vY[0], 1);
    EXPECT_NEAR(128, frame.vUV[0], 1);
    EXPECT_FALSE(ConvertColours({1, 2, 3}, {}, frame));
}

TEST(MeanTheSame, KnowsProfilesByWhatTheyDo)
{
    EXPECT_TRUE(MeanTheSame({}, {}));
    EXPECT_TRUE(MeanTheSame({1, 2, 3}, {1, 2, 3}));
    EXPECT_FALSE(MeanTheSame({1, 2, 3}, {}));
    EXPECT_FALSE(MeanTheSame(WideProfile(), {}));
    EXPECT_TRUE(ProfileOfPrimaries({0.3127, 0.329, 0.64, 0.33, 0.3, 0.6, 0.15, 0.06}).empty());
    Bytes vOther = WideProfile();
    vOther[24] ^= 1;  // the year it was made
    EXPECT_TRUE(MeanTheSame(WideProfile(), vOther));
}

// Also one that needs several segments of a JPEG.
TEST(Profile, ComesBackFromBothFormats)
{
    const Frame frame = FlatFrame(200, 100, 50);
    Bytes vLong = WideProfile();
    vLong.resize(150000, 7);
    for (int i = 0; i < 4; ++i) vLong[static_cast<size_t>(i)] = static_cast<uint8_t>(vLong.size() >> (24 - 8 * i));
    std::string sWarning;
    for (const Bytes& vProfile : {WideProfile(), vLong}) {
        EXPECT_EQ(vProfile, ReadPicture(WriteJpeg(frame, 90, vProfile), "", sWarning).vProfile);
        EXPECT_EQ("", sWarning);
    }
    const Bytes vPng = WritePng(RgbFromFrame(frame), false, WideProfile());
    EXPECT_EQ(WideProfile(), ReadPicture(vPng, "", sWarning).vProfile);
    EXPECT_EQ(ReadPng(WritePng(RgbFromFrame(frame)), "").vSamples, ReadPng(vPng, "").vSamples);
    EXPECT_TRUE(ReadPngFacts(WritePng(RgbFromFrame(frame))).vProfile.empty());
}

TEST(FuseCommandColours, FollowTheReference)
{
    const TestFolder folder;
    const std::vector<Frame> vFrames = DrawnFrames(96, 80);
    for (size_t k = 0; k < 3; ++k) {
        const std::string sName = std::to_string(k);
        WriteWholeFile(folder.Path(sName + ".jpg"), WriteJpeg(vFrames[k], 95));
        WriteWholeFile(folder.Path(sName + "w.png"), WritePng(RgbFromFrame(vFrames[k]), false, WideProfile()));
    }
    const struct {
        std::vector<std::string> vImages;
        Bytes vProfile;
        const char* pLine;
    } vCases[] = {{{"0.jpg", "1w.png", "2.jpg"}, WideProfile(), "0.jpg: colours converted from sRGB to "},
                  {{"0w.png", "1.jpg", "2.jpg"}, {}, "0w.png: colours converted from "},
                  {{"0w.png", "1w.png", "2w.png"}, WideProfile(), nullptr}};
    for (const auto& c : vCases) {
        for (const char* pOut : {"out.jpg", "out.png"}) {
            std::vector<std::string> vArguments = {"fuse", "-o", pOut};
            vArguments.insert(vArguments.end(), c.vImages.begin(), c.vImages.end());
            const ToolRun run = RunTool(folder, vArguments);
            ASSERT_EQ(0, run.nStatus) << run.sErr;
            std::string sWarning;
            EXPECT_EQ(c.vProfile, ReadPicture(ReadWholeFile(folder.Path(pOut)), "", sWarning).vProfile);
            EXPECT_NE(std::string::npos, run.sErr.find(c.pLine == nullptr ? "wrote" : c.pLine)) << run.sErr;
            EXPECT_EQ(c.pLine == nullptr, run.sErr.find("converted") == std::string::npos) << run.sErr;
        }
    }
}

}  // namespace vkr::tool
