#include <turbojpeg.h>

#include <algorithm>
#include <memory>

#include "pictures/colour_convert.h"
#include "pictures/jpeg_decoder.h"
#include "pictures/picture_io.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

using Turbo = std::unique_ptr<void, int (*)(tjhandle)>;

// Mean, rounded, of the stored samples that fall under one chroma pair: 1, 2 or 4 of them, or the one that serves
// several pairs.
uint8_t ChromaOfPair(const JpegPlane& plane, int x, int y, int nStepX, int nStepY)
{
    const int nX = x * nStepX / 2, nY = y * nStepY / 2;
    const int nAcross = std::max(nStepX / 2, 1), nDown = std::max(nStepY / 2, 1);
    int nSum = nAcross * nDown / 2;
    for (int j = 0; j < nDown; ++j) {
        for (int i = 0; i < nAcross; ++i) nSum += plane.Row(nY + j)[nX + i];
    }
    return static_cast<uint8_t>(nSum / (nAcross * nDown));
}

void FillChroma(const DecodedJpeg& jpeg, Frame& frame)
{
    if (jpeg.nPlanes == 1) {
        std::fill(frame.vUV.begin(), frame.vUV.end(), uint8_t{128});
        return;
    }
    uint8_t* pUV = frame.vUV.data();
    for (int y = 0; y < frame.nHeight / 2; ++y) {
        for (int x = 0; x < frame.nWidth / 2; ++x) {
            *pUV++ = ChromaOfPair(jpeg.vPlanes[1], x, y, jpeg.nStepX, jpeg.nStepY);
            *pUV++ = ChromaOfPair(jpeg.vPlanes[2], x, y, jpeg.nStepX, jpeg.nStepY);
        }
    }
}

Frame FrameFromPlanes(const DecodedJpeg& jpeg)
{
    Frame frame;
    frame.Resize(jpeg.nWidth & ~1, jpeg.nHeight & ~1);
    for (int y = 0; y < frame.nHeight; ++y) {
        std::copy_n(jpeg.vPlanes[0].Row(y), frame.nWidth, frame.vY.data() + static_cast<size_t>(y) * frame.nWidth);
    }
    FillChroma(jpeg, frame);
    return frame;
}

// Behind the JFIF segment that the encoder writes first, in as many segments as it needs.
Bytes WithProfileSegments(const Bytes& vJpeg, const Bytes& vProfile)
{
    constexpr size_t kMost = 65519;  // of a profile in one segment
    constexpr size_t kFirst = 2;     // behind the start mark
    const size_t nParts = (vProfile.size() + kMost - 1) / kMost;
    if (nParts == 0 || nParts > 255) return vJpeg;
    const size_t nPlace = kFirst + 2 + (static_cast<size_t>(vJpeg[kFirst + 2]) << 8 | vJpeg[kFirst + 3]);
    Bytes vSegments;
    for (size_t i = 0; i < nParts; ++i) {
        const size_t nBegin = i * kMost, nSize = std::min(kMost, vProfile.size() - nBegin);
        const size_t nLength = nSize + 16;  // itself, the name, two numbers
        vSegments.insert(vSegments.end(), {0xFF, 0xE2, static_cast<uint8_t>(nLength >> 8),
                                           static_cast<uint8_t>(nLength), 'I', 'C', 'C', '_', 'P', 'R', 'O', 'F', 'I',
                                           'L', 'E', 0, static_cast<uint8_t>(i + 1), static_cast<uint8_t>(nParts)});
        const auto part = vProfile.begin() + static_cast<std::ptrdiff_t>(nBegin);
        vSegments.insert(vSegments.end(), part, part + static_cast<std::ptrdiff_t>(nSize));
    }
    Bytes vResult = vJpeg;
    vResult.insert(vResult.begin() + static_cast<std::ptrdiff_t>(nPlace), vSegments.begin(), vSegments.end());
    return vResult;
}

}  // namespace

StoredFrame ReadJpeg(const Bytes& vBytes, const std::string& sName, std::string& sWarning)
{
    const DecodedJpeg jpeg = DecodeJpeg(vBytes, sName, sWarning);
    return {jpeg.nPlanes == 0 ? FrameFromRgb(jpeg.rgb, sName) : FrameFromPlanes(jpeg), jpeg.nWidth, jpeg.nHeight,
            jpeg.vProfile};
}

Bytes WriteJpeg(const Frame& frame, int nQuality, const Bytes& vProfile)
{
    const Turbo turbo(tjInitCompress(), &tjDestroy);
    if (!turbo) throw BurstError("no memory for the JPEG encoder");
    const size_t nPairs = frame.vUV.size() / 2;
    Bytes vCb(nPairs), vCr(nPairs);
    Bytes& vFirst = frame.bCrFirst ? vCr : vCb;
    Bytes& vSecond = frame.bCrFirst ? vCb : vCr;
    for (size_t i = 0; i < nPairs; ++i) {
        vFirst[i] = frame.vUV[2 * i];
        vSecond[i] = frame.vUV[2 * i + 1];
    }
    const unsigned char* vPlanes[3] = {frame.vY.data(), vCb.data(), vCr.data()};
    unsigned char* pJpeg = nullptr;
    unsigned long nSize = 0;
    const int nResult = tjCompressFromYUVPlanes(turbo.get(), vPlanes, frame.nWidth, nullptr, frame.nHeight, TJSAMP_420,
                                                &pJpeg, &nSize, nQuality, TJFLAG_ACCURATEDCT);
    const std::unique_ptr<unsigned char, void (*)(unsigned char*)> buffer(pJpeg, &tjFree);
    if (nResult != 0) throw BurstError(std::string("the JPEG encoder failed: ") + tjGetErrorStr2(turbo.get()));
    return WithProfileSegments(Bytes(pJpeg, pJpeg + nSize), vProfile);
}

}  // namespace vkr::tool
