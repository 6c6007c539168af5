#include "face/face_intensity.h"

#include <algorithm>
#include <cstdlib>

#include "face/box_runs.h"
#include "foundation/fixed_point.h"
#include "foundation/log.h"

namespace vkr {

namespace {

constexpr int32_t kLevels = 256;  // a level is looked for among these
// Skin is redder than anything beside it. Components no more than this apart, noise and white balance can make of grey;
// red no more than this above green is as well yellow: hair, wood, a lamp.
constexpr int32_t kLeastSpread = 15;

struct SkinHistogram {
    int64_t nCount = 0;
    int64_t vBins[3][2 * kLevels] = {};  // base values less a negative black level reach beyond 255

    void Add(int32_t b, int32_t g, int32_t r, int64_t nTimes)
    {
        nCount += nTimes;
        vBins[0][b] += nTimes;
        vBins[1][g] += nTimes;
        vBins[2][r] += nTimes;
    }
};

bool IsSkin(int32_t b, int32_t g, int32_t r)
{
    const int32_t nSpread = std::max({b, g, r}) - std::min({b, g, r});
    return nSpread > kLeastSpread && std::abs(r - g) > kLeastSpread && r > g && r > b;
}

// The first bin, from 0 up, whose running sum exceeds nMost; nElse if none does.
int32_t BinFromBelow(const int64_t* pBins, int64_t nMost, int32_t nElse)
{
    int64_t nSum = 0;
    for (int32_t i = 0; i < kLevels; ++i) {
        nSum += pBins[i];
        if (nSum > nMost) return i;
    }
    return nElse;
}

int32_t BinFromAbove(const int64_t* pBins, int64_t nMost, int32_t nElse)
{
    int64_t nSum = 0;
    for (int32_t i = kLevels - 1; i >= 0; --i) {
        nSum += pBins[i];
        if (nSum > nMost) return i;
    }
    return nElse;
}

void TakeLevels(const SkinHistogram& skin, const FaceParams& params, FaceIntensity& intensity)
{
    const int64_t nDark = params.nFaceHistDropLowLightRate * skin.nCount / 100;
    const int64_t nBright = params.nFaceHistDropHighLightRate * skin.nCount / 100;
    for (int c = 0; c < 3; ++c) {
        intensity.vLow[c] = BinFromBelow(skin.vBins[c], nDark, intensity.vLow[c]);
        intensity.vHigh[c] = BinFromAbove(skin.vBins[c], nBright, intensity.vHigh[c]);
    }
}

void TakeMedians(const SkinHistogram& skin, FaceIntensity& intensity)
{
    for (int c = 0; c < 3; ++c) {
        intensity.vLow[c] = BinFromBelow(skin.vBins[c], skin.nCount >> 1, intensity.vLow[c]);
    }
}

// Calls fn(pixel, times) for the pixels of the box.
template <class Image, class Fn>
void VisitBox(const FaceBox& box, const Image& image, const Fn& fn)
{
    HdrPrintf("x1 = %i, y1 = %i, x2 = %i, y2 = %i\n", box.x1, box.y1, box.x2, box.y2);
    if (image.Empty() || image.nDim < 3) return;
    VisitBoxRuns(box, image.nWidth, image.nHeight, [&](int64_t nBegin, int64_t nEnd, int64_t nTimes) {
        const auto* pPixel = image.pData + nBegin * image.nDim;
        for (int64_t n = nBegin; n < nEnd; ++n, pPixel += image.nDim) fn(pPixel, nTimes);
    });
}

void PrintRedBins(const SkinHistogram& skin)
{
    HdrPrintf("FaceIntensity R:");
    for (int i = 0; i < 300; ++i) HdrPrintf("%i ", static_cast<int>(skin.vBins[2][i]));
    HdrPrintf("\n");
}

int32_t Sum(const int32_t (&vLevels)[3])
{
    return vLevels[0] + vLevels[1] + vLevels[2];
}

}  // namespace

void GetReferenceFaceIntensity(const FaceBox& box, const CImage& image, const FaceParams& params,
                               const FaceMeasure& measure, FaceIntensity& intensity, int32_t& bBrightDarkFace)
{
    SkinHistogram skin;
    VisitBox(box, image, [&](const uint8_t* p, int64_t nTimes) {
        if (IsSkin(p[0], p[1], p[2])) skin.Add(p[0], p[1], p[2], nTimes);
    });
    const auto& vLow = intensity.vLow;
    const auto& vHigh = intensity.vHigh;
    TakeLevels(skin, params, intensity);
    HdrPrintf("Reference Face Low  Intensity = [%i,%i,%i]\n", vLow[0], vLow[1], vLow[2]);
    HdrPrintf("Reference Face High Intensity = [%i,%i,%i]\n", vHigh[0], vHigh[1], vHigh[2]);

    if (Sum(vHigh) - Sum(vLow) > params.nBrightDarkFaceThres) {
        bBrightDarkFace = 1;
        if (measure.dumps) HdrPrintf("!!!Bright Dark Face!!!");
        return;
    }
    if (measure.bHSVStretch) return;
    TakeMedians(skin, intensity);
    HdrPrintf("Reference Face Intensity = [%i,%i,%i]\n", vLow[0], vLow[1], vLow[2]);
}

void GetFusionFaceIntensity(const FaceBox& box, const CShortImage& fused, int32_t nLowLevel, const FaceParams& params,
                            const FaceMeasure& measure, int32_t bBrightDarkFace, FaceIntensity& intensity)
{
    SkinHistogram skin;
    VisitBox(box, fused, [&](const int16_t* p, int64_t nTimes) {
        const int32_t b = (p[0] & 255) - nLowLevel, g = (p[1] & 255) - nLowLevel, r = (p[2] & 255) - nLowLevel;
        const bool bInside = std::min({b, g, r}) >= 1 && std::max({b, g, r}) < 2 * kLevels;
        if (bInside && IsSkin(b, g, r)) skin.Add(b, g, r, nTimes);
    });
    const auto& vLow = intensity.vLow;
    const auto& vHigh = intensity.vHigh;
    if (!bBrightDarkFace && !measure.bHSVStretch) {
        if (measure.dumps) HdrPrintf("FaceCountFusion %i \n", static_cast<int>(skin.nCount));
        TakeMedians(skin, intensity);
        HdrPrintf("Fusion Face Intensity = [%i, %i, %i]\n", vLow[0], vLow[1], vLow[2]);
        return;
    }
    TakeLevels(skin, params, intensity);
    if (measure.dumps) PrintRedBins(skin);
    HdrPrintf("Fusion Face Low  Intensity = [%i, %i, %i]\n", vLow[0], vLow[1], vLow[2]);
    HdrPrintf("Fusion Face High Intensity = [%i,%i,%i]\n", vHigh[0], vHigh[1], vHigh[2]);
}

int32_t FaceBrightness(const FaceIntensity& intensity, int32_t nFusionWeightSelect)
{
    const auto& v = intensity.vLow;
    if (nFusionWeightSelect == 0) return LumaOfBgr(v[0], v[1], v[2]);
    if (nFusionWeightSelect == 1) return std::max({v[0], v[1], v[2]});
    return std::min({v[0], v[1], v[2]});
}

}  // namespace vkr
