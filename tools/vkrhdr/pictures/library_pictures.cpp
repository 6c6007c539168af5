#include "pictures/library_pictures.h"

#include <algorithm>

namespace vkr::tool {

namespace {

uint8_t Shown(uint8_t n)
{
    return n;
}
uint8_t Shown(int16_t n)
{
    return static_cast<uint8_t>(std::clamp(n / 2 + 128, 0, 255));
}

template <class Image>
Raster RasterOf(const Image& image, int nFirst, int nCount)
{
    Raster raster;
    raster.Resize(image.nWidth, image.nHeight, nCount == 1 ? 1 : 3);
    for (int y = 0; y < image.nHeight; ++y) {
        const auto* pSrc = image.Row(y) + nFirst;
        uint8_t* pDst = raster.Row(y);
        for (int x = 0; x < image.nWidth; ++x, pSrc += image.nDim, pDst += raster.nChannels) {
            for (int c = 0; c < nCount; ++c) pDst[nCount == 1 ? 0 : 2 - c] = Shown(pSrc[c]);
        }
    }
    return raster;
}

}  // namespace

Frame FrameOf(const CYuvImage& image, bool bCrFirst)
{
    Frame frame;
    frame.bCrFirst = bCrFirst;
    frame.Resize(image.nWidth, image.nHeight);
    std::copy_n(image.pY, frame.vY.size(), frame.vY.begin());
    std::copy_n(image.pUV, frame.vUV.size(), frame.vUV.begin());
    return frame;
}

Raster ChannelsOf(const CImage& image, int nFirst, int nCount)
{
    return RasterOf(image, nFirst, nCount);
}

Raster ChannelsOf(const CShortImage& image, int nFirst, int nCount)
{
    return RasterOf(image, nFirst, nCount);
}

}  // namespace vkr::tool
