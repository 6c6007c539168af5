#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <cstdlib>
#include <memory>
#include <random>

#include "pictures/picture_io.h"
#include "pictures/tool_error.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {

// Smooth, so that a JPEG of quality 100 comes back within a level or two.
Raster Gradient(int w, int h)
{
    Raster rgb;
    rgb.Resize(w, h, 3);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            uint8_t* p = rgb.Row(y) + 3 * x;
            p[0] = static_cast<uint8_t>(40 + 150 * x / w);
            p[1] = static_cast<uint8_t>(60 + 120 * y / h);
            p[2] = static_cast<uint8_t>(200 - 100 * x / w);
        }
    }
    return rgb;
}

Bytes EncodeRgb(const Raster& rgb, int nSampling, int nPixelFormat = TJPF_RGB)
{
    const std::unique_ptr<void, int (*)(tjhandle)> turbo(tjInitCompress(), &tjDestroy);
    unsigned char* pJpeg = nullptr;
    unsigned long nSize = 0;
    const int nChannels = tjPixelSize[nPixelFormat];
    Bytes vSamples(static_cast<size_t>(rgb.nWidth) * rgb.nHeight * nChannels);
    for (size_t i = 0; i < vSamples.size(); ++i) {
        const size_t nPixel = i / nChannels, c = i % nChannels;
        vSamples[i] = c < 3 ? rgb.vSamples[3 * nPixel + c] : uint8_t{255};
    }
    EXPECT_EQ(0, tjCompress2(turbo.get(), vSamples.data(), rgb.nWidth, 0, rgb.nHeight, nPixelFormat, &pJpeg, &nSize,
                             nSampling, 100, TJFLAG_ACCURATEDCT));
    Bytes vJpeg(pJpeg, pJpeg + nSize);
    tjFree(pJpeg);
    return vJpeg;
}

// Full-range YCbCr of a place, by the textbook.
void ExpectColour(const StoredFrame& stored, const Raster& rgb, int nTolerance)
{
    const Frame& frame = stored.frame;
    for (int y = 0; y < frame.nHeight; ++y) {
        for (int x = 0; x < frame.nWidth; ++x) {
            const uint8_t* p = rgb.Row(y) + 3 * x;
            const double fY = 0.299 * p[0] + 0.587 * p[1] + 0.114 * p[2];
            const uint8_t* pUV = frame.vUV.data() + static_cast<size_t>(y / 2) * frame.nWidth + x / 2 * 2;
            ASSERT_NEAR(fY, frame.vY[static_cast<size_t>(y) * frame.nWidth + x], nTolerance) << x << "," << y;
            ASSERT_NEAR(128 + (p[2] - fY) / 1.772, pUV[0], nTolerance) << x << "," << y;
            ASSERT_NEAR(128 + (p[0] - fY) / 1.402, pUV[1], nTolerance) << x << "," << y;
        }
    }
}

StoredFrame Read(const Bytes& vJpeg)
{
    std::string sWarning;
    StoredFrame stored = ReadJpeg(vJpeg, "test.jpg", sWarning);
    EXPECT_EQ("", sWarning);
    return stored;
}

}  // namespace

TEST(ReadJpeg, TakesTheStoredLumaOf420AsItIs)
{
    const Bytes vJpeg = WriteJpeg(DrawnFrames(96, 80)[2], 80);
    const Frame frame = Read(vJpeg).frame;
    Bytes vGrey(frame.vY.size());
    const std::unique_ptr<void, int (*)(tjhandle)> turbo(tjInitDecompress(), &tjDestroy);
    ASSERT_EQ(0, tjDecompress2(turbo.get(), vJpeg.data(), vJpeg.size(), vGrey.data(), 96, 0, 80, TJPF_GRAY,
                               TJFLAG_ACCURATEDCT));
    EXPECT_EQ(vGrey, frame.vY);
}

// Quantisation of quality 100 rounds coefficients to whole numbers: samples move by 2 at most. Any conversion of
// colours in between, or a chroma plane out of place, moves them further.
TEST(WriteJpeg, KeepsThePlanesAtFullQuality)
{
    for (const bool bCrFirst : {false, true}) {
        Frame frame = DrawnFrames(64, 48)[1];
        frame.bCrFirst = bCrFirst;
        const Frame back = Read(WriteJpeg(frame, 100)).frame;
        ASSERT_EQ(frame.vY.size(), back.vY.size());
        for (size_t i = 0; i < frame.vY.size(); ++i) ASSERT_NEAR(frame.vY[i], back.vY[i], 2);
        for (size_t i = 0; i < frame.vUV.size(); ++i) {
            ASSERT_NEAR(frame.vUV[i], back.vUV[bCrFirst ? i ^ 1 : i], 2) << i << " Cr first " << bCrFirst;
        }
    }
}

TEST(ReadJpeg, ConvertsOtherSamplings)
{
    const Raster rgb = Gradient(70, 54);
    for (const int nSampling : {TJSAMP_444, TJSAMP_422, TJSAMP_440, TJSAMP_420}) {
        SCOPED_TRACE(nSampling);
        ExpectColour(Read(EncodeRgb(rgb, nSampling)), rgb, 4);
    }
    ExpectColour(Read(EncodeRgb(rgb, TJSAMP_411)), rgb, 6);
}

TEST(ReadJpeg, GivesGreyWithoutColour)
{
    const StoredFrame stored = Read(EncodeRgb(Gradient(32, 32), TJSAMP_GRAY));
    EXPECT_EQ(Bytes(stored.frame.vUV.size(), 128), stored.frame.vUV);
    EXPECT_NEAR(0.299 * 40 + 0.587 * 60 + 0.114 * 200, stored.frame.vY[0], 3);
}

TEST(ReadJpeg, CutsOddSidesToEven)
{
    for (const int nSampling : {TJSAMP_420, TJSAMP_444, TJSAMP_422, TJSAMP_411}) {
        for (const int nSide : {3, 15, 17, 33}) {
            SCOPED_TRACE(testing::Message() << nSampling << " " << nSide);
            const Raster rgb = Gradient(nSide, nSide + 2);
            const StoredFrame stored = Read(EncodeRgb(rgb, nSampling));
            EXPECT_EQ(nSide - 1, stored.frame.nWidth);
            EXPECT_EQ(nSide + 1, stored.frame.nHeight);
            EXPECT_EQ(nSide, stored.nStoredWidth);
            EXPECT_EQ(nSide + 2, stored.nStoredHeight);
            EXPECT_EQ(stored.frame.vY.size(), 2 * stored.frame.vUV.size());
        }
    }
}

TEST(ReadJpeg, RefusesWhatItCanNotUse)
{
    std::string sWarning;
    const Bytes vCmyk = EncodeRgb(Gradient(32, 32), TJSAMP_444, TJPF_CMYK);
    EXPECT_THROW(ReadJpeg(vCmyk, "cmyk.jpg", sWarning), BurstError);
    const Bytes vWhole = EncodeRgb(Gradient(64, 64), TJSAMP_420);
    for (size_t nSize : {size_t{3}, size_t{100}, vWhole.size() / 2}) {
        const Bytes vCut(vWhole.begin(), vWhole.begin() + static_cast<std::ptrdiff_t>(nSize));
        EXPECT_THROW(ReadJpeg(vCut, "cut.jpg", sWarning), BurstError) << nSize;
    }
    EXPECT_THROW(Read(EncodeRgb(Gradient(1, 8), TJSAMP_444)), BurstError);
}

// Damaged files may be refused or read with a complaint; they never take the program down.
TEST(ReadPicture, SurvivesDamage)
{
    const Frame frame = DrawnFrames(48, 32)[1];
    std::mt19937 rng(7);
    for (const Bytes& vWhole : {WriteJpeg(frame, 90), WritePng(Gradient(48, 32))}) {
        for (int i = 0; i < 300; ++i) {
            Bytes vBytes = vWhole;
            for (int k = 0; k < 3; ++k) vBytes[4 + rng() % (vBytes.size() - 4)] = static_cast<uint8_t>(rng());
            if (i % 3 == 0) vBytes.resize(rng() % vBytes.size());
            std::string sWarning;
            try {
                const StoredFrame stored = ReadPicture(vBytes, "damaged", sWarning);
                ASSERT_EQ(stored.frame.vY.size(), 2 * stored.frame.vUV.size());
            } catch (const BurstError&) {
            }
        }
    }
}

}  // namespace vkr::tool
