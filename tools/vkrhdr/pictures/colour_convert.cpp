#include "pictures/colour_convert.h"

#include <algorithm>
#include <vector>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// 16.16; the three of each row sum to 1 (luma) or 0 (chroma), so that grey gives exactly itself and 128.
constexpr int kYr = 19595, kYg = 38470, kYb = 7471;
constexpr int kCbR = -11059, kCbG = -21709, kCbB = 32768;
constexpr int kCrR = 32768, kCrG = -27439, kCrB = -5329;
constexpr int kHalf = 1 << 15;

uint8_t Clip(int n)
{
    return static_cast<uint8_t>(std::clamp(n, 0, 255));
}

void LumaRow(const uint8_t* pRgb, uint8_t* pY, int nCount)
{
    for (int x = 0; x < nCount; ++x) {
        pY[x] = static_cast<uint8_t>((kYr * pRgb[3 * x] + kYg * pRgb[3 * x + 1] + kYb * pRgb[3 * x + 2] + kHalf) >> 16);
    }
}

void MeanRow(const uint8_t* pUpper, const uint8_t* pLower, uint8_t* pMean, int nCount)
{
    for (int x = 0; x < nCount; ++x) {
        pMean[x] =
            static_cast<uint8_t>((pUpper[2 * x] + pUpper[2 * x + 1] + pLower[2 * x] + pLower[2 * x + 1] + 2) >> 2);
    }
}

// Sums of four pixels, hence two more bits to drop.
void ChromaRow(const uint8_t* pUpper, const uint8_t* pLower, uint8_t* pUV, int nPairs)
{
    for (int x = 0; x < nPairs; ++x) {
        int vSum[3];
        for (int c = 0; c < 3; ++c) {
            vSum[c] = pUpper[6 * x + c] + pUpper[6 * x + 3 + c] + pLower[6 * x + c] + pLower[6 * x + 3 + c];
        }
        const int nOffset = (128 << 18) + (1 << 17);
        pUV[2 * x] = Clip((kCbR * vSum[0] + kCbG * vSum[1] + kCbB * vSum[2] + nOffset) >> 18);
        pUV[2 * x + 1] = Clip((kCrR * vSum[0] + kCrG * vSum[1] + kCrB * vSum[2] + nOffset) >> 18);
    }
}

// One row of chroma pairs at full width, still times 16: the two nearest rows of pairs 3:1, then the pairs 3:1.
void RaiseChromaRow(const uint8_t* pNear, const uint8_t* pFar, int* pRaised, int nPairs)
{
    for (int x = 0; x < nPairs; ++x) {
        const int nBefore = std::max(x - 1, 0), nAfter = std::min(x + 1, nPairs - 1);
        for (int c = 0; c < 2; ++c) {
            const auto column = [&](int i) { return 3 * pNear[2 * i + c] + pFar[2 * i + c]; };
            pRaised[4 * x + c] = 3 * column(x) + column(nBefore);
            pRaised[4 * x + 2 + c] = 3 * column(x) + column(nAfter);
        }
    }
}

// Chroma comes times 16 and in the order of the frame.
void RgbRow(const uint8_t* pY, const int* pRaised, bool bCrFirst, uint8_t* pRgb, int nCount)
{
    constexpr int kRCr = 91881, kGCb = -22554, kGCr = -46802, kBCb = 116130;  // 16.16
    const int nCb = bCrFirst ? 1 : 0;
    for (int x = 0; x < nCount; ++x) {
        const int64_t nU = pRaised[2 * x + nCb] - 16 * 128;
        const int64_t nV = pRaised[2 * x + 1 - nCb] - 16 * 128;
        const int64_t nLuma = (static_cast<int64_t>(pY[x]) << 20) + (1 << 19);
        pRgb[3 * x] = Clip(static_cast<int>((nLuma + kRCr * nV) >> 20));
        pRgb[3 * x + 1] = Clip(static_cast<int>((nLuma + kGCb * nU + kGCr * nV) >> 20));
        pRgb[3 * x + 2] = Clip(static_cast<int>((nLuma + kBCb * nU) >> 20));
    }
}

}  // namespace

Frame FrameFromRgb(const Raster& rgb, const std::string& sName)
{
    if (rgb.nWidth < 2 || rgb.nHeight < 2) throw BurstError(sName + ": is smaller than 2x2 pixels");
    Frame frame;
    frame.Resize(rgb.nWidth & ~1, rgb.nHeight & ~1);
    const size_t nWidth = static_cast<size_t>(frame.nWidth);
    for (int y = 0; y < frame.nHeight; ++y) LumaRow(rgb.Row(y), frame.vY.data() + y * nWidth, frame.nWidth);
    for (int y = 0; y < frame.nHeight; y += 2) {
        ChromaRow(rgb.Row(y), rgb.Row(y + 1), frame.vUV.data() + y / 2 * nWidth, frame.nWidth / 2);
    }
    return frame;
}

Raster RgbFromFrame(const Frame& frame)
{
    Raster rgb;
    rgb.Resize(frame.nWidth, frame.nHeight, 3);
    std::vector<int> vRaised(static_cast<size_t>(frame.nWidth) * 2);
    const size_t nWidth = static_cast<size_t>(frame.nWidth);
    const int nRows = frame.nHeight / 2;
    for (int y = 0; y < frame.nHeight; ++y) {
        const int nNear = y / 2;
        const int nFar = std::clamp(y % 2 == 0 ? nNear - 1 : nNear + 1, 0, nRows - 1);
        const uint8_t* pUV = frame.vUV.data();
        RaiseChromaRow(pUV + nNear * nWidth, pUV + nFar * nWidth, vRaised.data(), frame.nWidth / 2);
        RgbRow(frame.vY.data() + y * nWidth, vRaised.data(), frame.bCrFirst, rgb.Row(y), frame.nWidth);
    }
    return rgb;
}

Raster HalfRgbFromFrame(const Frame& frame)
{
    Raster rgb;
    rgb.Resize(frame.nWidth / 2, frame.nHeight / 2, 3);
    Bytes vLuma(static_cast<size_t>(rgb.nWidth));
    std::vector<int> vRaised(vLuma.size() * 2);
    const size_t nWidth = static_cast<size_t>(frame.nWidth);
    for (int y = 0; y < rgb.nHeight; ++y) {
        MeanRow(frame.vY.data() + 2 * y * nWidth, frame.vY.data() + (2 * y + 1) * nWidth, vLuma.data(), rgb.nWidth);
        std::transform(frame.vUV.begin() + y * nWidth, frame.vUV.begin() + (y + 1) * nWidth, vRaised.begin(),
                       [](uint8_t n) { return 16 * n; });
        RgbRow(vLuma.data(), vRaised.data(), frame.bCrFirst, rgb.Row(y), rgb.nWidth);
    }
    return rgb;
}

Raster TurnUpright(const Raster& raster, int nExifOrientation)
{
    if (nExifOrientation < 2 || nExifOrientation > 8) return raster;
    const bool bSwapSides = nExifOrientation >= 5;
    const bool bMirrorX =
        nExifOrientation == 2 || nExifOrientation == 3 || nExifOrientation == 7 || nExifOrientation == 8;
    const bool bMirrorY =
        nExifOrientation == 3 || nExifOrientation == 4 || nExifOrientation == 6 || nExifOrientation == 7;
    Raster upright;
    upright.Resize(bSwapSides ? raster.nHeight : raster.nWidth, bSwapSides ? raster.nWidth : raster.nHeight,
                   raster.nChannels);
    for (int y = 0; y < upright.nHeight; ++y) {
        for (int x = 0; x < upright.nWidth; ++x) {
            const int nX = bSwapSides ? y : x;
            const int nY = bSwapSides ? x : y;
            const uint8_t* pFrom = raster.Row(bMirrorY ? raster.nHeight - 1 - nY : nY) +
                                   static_cast<size_t>(bMirrorX ? raster.nWidth - 1 - nX : nX) * raster.nChannels;
            std::copy_n(pFrom, raster.nChannels, upright.Row(y) + static_cast<size_t>(x) * raster.nChannels);
        }
    }
    return upright;
}

Raster ScaleDown(const Raster& raster, int nFactor)
{
    Raster small;
    small.Resize(raster.nWidth / nFactor, raster.nHeight / nFactor, raster.nChannels);
    const int nCell = nFactor * nFactor;
    for (int y = 0; y < small.nHeight; ++y) {
        for (int i = 0; i < small.nWidth * small.nChannels; ++i) {
            const int nFirst = i / small.nChannels * nFactor * small.nChannels + i % small.nChannels;
            int nSum = nCell / 2;
            for (int k = 0; k < nCell; ++k) {
                nSum += raster.Row(y * nFactor + k / nFactor)[nFirst + k % nFactor * raster.nChannels];
            }
            small.Row(y)[i] = static_cast<uint8_t>(nSum / nCell);
        }
    }
    return small;
}

}  // namespace vkr::tool
