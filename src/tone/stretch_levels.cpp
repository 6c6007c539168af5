#include "tone/stretch_levels.h"

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "tone/brightness_statistics.h"

namespace vkr {

namespace {

// Pixels that may lie beyond a level, nShare in 1/65536 of the picture.
int64_t PixelsBeyond(int32_t nShare, int64_t nPixelCount)
{
    return (nShare * nPixelCount) >> 16;
}

// The last bin whose running sum, from bin 0 up, is still at most nMost; -1 if bin 0 alone exceeds it.
int32_t LastDarkBin(const int32_t* pHist, int32_t nLast, int64_t nMost)
{
    int64_t nSum = 0;
    for (int32_t i = 0; i <= nLast; ++i) {
        nSum += pHist[i];
        if (nSum > nMost) return i - 1;
    }
    return nLast < 0 ? -1 : nLast;
}

// The first bin at which the running sum, from the last bin down, exceeds nMost; -1 if none does.
int32_t FirstBrightBin(const int32_t* pHist, int32_t nLast, int64_t nMost)
{
    if (nLast < 0) return nLast;  // limits in wrong order: no bins, and the limit itself is the level
    int64_t nSum = 0;
    for (int32_t i = nLast; i >= 0; --i) {
        nSum += pHist[i];
        if (nSum > nMost) return i;
    }
    return -1;
}

// nStep / 16 of the way, rounded by an arithmetic shift.
int32_t Approach(int32_t nLevel, int32_t nTarget, int32_t nStep)
{
    return nLevel + ((nStep * (nTarget - nLevel) + 8) >> 4);
}

}  // namespace

void GetStretchLevels(const int32_t* pHist, int64_t nPixelCount, const ToneParams& params, StretchLevels& levels)
{
    const int32_t nLast = params.nMaxHighLevel - params.nMinLowLevel;
    const int32_t nDark = LastDarkBin(pHist, nLast, PixelsBeyond(params.nDarkPercetage, nPixelCount));
    const int32_t nBright = FirstBrightBin(pHist, nLast, PixelsBeyond(params.nHLPercetage, nPixelCount));

    int32_t nLowTarget = 0;
    if (params.bKeepDarkDetailEnable) {
        nLowTarget = Clamp(nDark + params.nMinLowLevel, params.nMinLowLevel, params.nMaxLowLevel);
    }
    int32_t nHighTarget = 255;
    if (params.bKeepHighLightDetailEnable) {
        nHighTarget = Clamp(params.nMinLowLevel + nBright + 1, params.nMinHighLevel, params.nMaxHighLevel);
    }
    levels.m_nLowLevel = Approach(levels.m_nLowLevel, nLowTarget, params.nLowLevelStep);
    levels.m_nHighLevel = Approach(levels.m_nHighLevel, nHighTarget, params.nHighLevelStep);
}

bool KeepsDetail(const ToneParams& params)
{
    return params.bKeepHighLightDetailEnable || params.bKeepDarkDetailEnable;
}

bool FollowStretchLevels(const CShortImage& fused, const ToneParams& params, StretchLevels& levels)
{
    HeapBuffer<int32_t> hist;
    if (!hist.AllocateZero(static_cast<size_t>(BrightnessBins(params)))) return false;
    if (!GetBrightnessHistogram(fused, params, hist.Data())) return false;
    GetStretchLevels(hist.Data(), int64_t{fused.nWidth} * fused.nHeight, params, levels);
    return true;
}

}  // namespace vkr
