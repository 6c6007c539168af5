#include <turbojpeg.h>

#include <algorithm>
#include <memory>

#include "pictures/colour_convert.h"
#include "pictures/picture_io.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

using Turbo = std::unique_ptr<void, int (*)(tjhandle)>;

// Largest side that a frame of the library may have.
constexpr int kMaxSide = 16384;

struct Header {
    int nWidth, nHeight, nSampling, nColourSpace;
};

// One channel of a decoded file at its own size, stride = width.
struct Plane {
    int nWidth = 0, nHeight = 0;
    Bytes vSamples;

    const uint8_t* Row(int y) const { return vSamples.data() + static_cast<size_t>(y) * nWidth; }
};

std::string Words(tjhandle handle)
{
    return tjGetErrorStr2(handle);
}

Header ReadHeader(tjhandle handle, const Bytes& vBytes, const std::string& sName)
{
    Header head{};
    if (tjDecompressHeader3(handle, vBytes.data(), vBytes.size(), &head.nWidth, &head.nHeight, &head.nSampling,
                            &head.nColourSpace) != 0 &&
        tjGetErrorCode(handle) == TJERR_FATAL) {
        throw BurstError(sName + ": no usable JPEG: " + Words(handle));
    }
    if (head.nColourSpace == TJCS_CMYK || head.nColourSpace == TJCS_YCCK) {
        throw BurstError(sName + ": is a CMYK picture; convert it to RGB first");
    }
    if (head.nWidth < 2 || head.nHeight < 2 || head.nWidth > kMaxSide || head.nHeight > kMaxSide) {
        throw BurstError(sName + ": is " + std::to_string(head.nWidth) + "x" + std::to_string(head.nHeight) +
                         " pixels, frames are 2x2 to 16384x16384");
    }
    return head;
}

// A cut file would leave a grey half in the result, so it is refused; lesser damage is told.
void CheckDecoded(tjhandle handle, int nResult, const std::string& sName, std::string& sWarning)
{
    if (nResult == 0) return;
    const std::string sWords = Words(handle);
    if (tjGetErrorCode(handle) == TJERR_FATAL || sWords.rfind("Premature end", 0) == 0) {
        throw BurstError(sName + ": is damaged: " + sWords);
    }
    sWarning = sName + ": " + sWords;
}

void ReadPlanes(tjhandle handle, const Bytes& vBytes, const Header& head, Plane (&vPlanes)[3], const std::string& sName,
                std::string& sWarning)
{
    const int nPlanes = head.nSampling == TJSAMP_GRAY ? 1 : 3;
    unsigned char* vRows[3] = {};
    for (int c = 0; c < nPlanes; ++c) {
        vPlanes[c].nWidth = tjPlaneWidth(c, head.nWidth, head.nSampling);
        vPlanes[c].nHeight = tjPlaneHeight(c, head.nHeight, head.nSampling);
        vPlanes[c].vSamples.resize(static_cast<size_t>(vPlanes[c].nWidth) * vPlanes[c].nHeight);
        vRows[c] = vPlanes[c].vSamples.data();
    }
    const int nResult = tjDecompressToYUVPlanes(handle, vBytes.data(), vBytes.size(), vRows, head.nWidth, nullptr,
                                                head.nHeight, TJFLAG_ACCURATEDCT);
    CheckDecoded(handle, nResult, sName, sWarning);
}

// Mean, rounded, of the stored samples that fall under one chroma pair: 1, 2 or 4 of them, or the one that serves
// several pairs.
uint8_t ChromaOfPair(const Plane& plane, int x, int y, int nStepX, int nStepY)
{
    const int nX = x * nStepX / 2, nY = y * nStepY / 2;
    const int nAcross = std::max(nStepX / 2, 1), nDown = std::max(nStepY / 2, 1);
    int nSum = nAcross * nDown / 2;
    for (int j = 0; j < nDown; ++j) {
        for (int i = 0; i < nAcross; ++i) nSum += plane.Row(nY + j)[nX + i];
    }
    return static_cast<uint8_t>(nSum / (nAcross * nDown));
}

// nStep: chroma samples for every two pairs, by the sampling of the file: 4 at full resolution, 2 at half, 1 at a
// quarter.
void FillChroma(const Header& head, const Plane (&vPlanes)[3], Frame& frame)
{
    if (head.nSampling == TJSAMP_GRAY) {
        std::fill(frame.vUV.begin(), frame.vUV.end(), uint8_t{128});
        return;
    }
    const int nStepX = 4 * 8 / tjMCUWidth[head.nSampling];
    const int nStepY = 4 * 8 / tjMCUHeight[head.nSampling];
    uint8_t* pUV = frame.vUV.data();
    for (int y = 0; y < frame.nHeight / 2; ++y) {
        for (int x = 0; x < frame.nWidth / 2; ++x) {
            *pUV++ = ChromaOfPair(vPlanes[1], x, y, nStepX, nStepY);
            *pUV++ = ChromaOfPair(vPlanes[2], x, y, nStepX, nStepY);
        }
    }
}

Frame ReadYcc(tjhandle handle, const Bytes& vBytes, const Header& head, const std::string& sName, std::string& sWarning)
{
    Plane vPlanes[3];
    ReadPlanes(handle, vBytes, head, vPlanes, sName, sWarning);
    Frame frame;
    frame.Resize(head.nWidth & ~1, head.nHeight & ~1);
    for (int y = 0; y < frame.nHeight; ++y) {
        std::copy_n(vPlanes[0].Row(y), frame.nWidth, frame.vY.data() + static_cast<size_t>(y) * frame.nWidth);
    }
    FillChroma(head, vPlanes, frame);
    return frame;
}

Frame ReadRgb(tjhandle handle, const Bytes& vBytes, const Header& head, const std::string& sName, std::string& sWarning)
{
    Raster rgb;
    rgb.Resize(head.nWidth, head.nHeight, 3);
    const int nResult = tjDecompress2(handle, vBytes.data(), vBytes.size(), rgb.vSamples.data(), head.nWidth, 0,
                                      head.nHeight, TJPF_RGB, TJFLAG_ACCURATEDCT);
    CheckDecoded(handle, nResult, sName, sWarning);
    return FrameFromRgb(rgb, sName);
}

}  // namespace

StoredFrame ReadJpeg(const Bytes& vBytes, const std::string& sName, std::string& sWarning)
{
    const Turbo turbo(tjInitDecompress(), &tjDestroy);
    if (!turbo) throw BurstError(sName + ": no memory for the JPEG decoder");
    const Header head = ReadHeader(turbo.get(), vBytes, sName);
    Frame frame = head.nColourSpace == TJCS_RGB ? ReadRgb(turbo.get(), vBytes, head, sName, sWarning)
                                                : ReadYcc(turbo.get(), vBytes, head, sName, sWarning);
    return {std::move(frame), head.nWidth, head.nHeight};
}

Bytes WriteJpeg(const Frame& frame, int nQuality)
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
    if (nResult != 0) throw BurstError("the JPEG encoder failed: " + Words(turbo.get()));
    return Bytes(pJpeg, pJpeg + nSize);
}

}  // namespace vkr::tool
