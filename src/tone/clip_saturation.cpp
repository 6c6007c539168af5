#include "tone/clip_saturation.h"

#include <algorithm>
#include <limits>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

struct SaturationSums {
    int32_t vMax[3];    // largest B, G, R, at least 0
    int64_t nSumMask;   // degrees
    int64_t nSumValue;  // degrees times greatest component
};

int32_t GreatestComponent(const int16_t* pPixel)
{
    return std::max({pPixel[0], pPixel[1], pPixel[2]});
}

void AddRow(const int16_t* pPixel, const uint8_t* pMask, int nWidth, int nDim, SaturationSums& sums)
{
    for (int x = 0; x < nWidth; ++x, pPixel += nDim) {
        for (int c = 0; c < 3; ++c) sums.vMax[c] = std::max<int32_t>(sums.vMax[c], pPixel[c]);
        sums.nSumMask += pMask[x];
        sums.nSumValue += pMask[x] * GreatestComponent(pPixel);
    }
}

bool GatherSums(const CShortImage& fused, const CImage& satuMask, SaturationSums& sums)
{
    HeapBuffer<SaturationSums> parts;  // one per thread
    if (!parts.AllocateZero(static_cast<size_t>(MaxTeam()))) return false;
    ParallelRows(fused.nHeight, [&](RowBlock rows) {
        SaturationSums part{};
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            AddRow(fused.Row(y), satuMask.Row(y), fused.nWidth, fused.nDim, part);
        }
        parts[static_cast<size_t>(rows.nIndex)] = part;
    });
    sums = SaturationSums{};
    for (size_t i = 0; i < parts.Count(); ++i) {
        for (int c = 0; c < 3; ++c) sums.vMax[c] = std::max(sums.vMax[c], parts[i].vMax[c]);
        sums.nSumMask += parts[i].nSumMask;
        sums.nSumValue += parts[i].nSumValue;
    }
    return true;
}

// Degrees by greatest component, bins 0 .. nMaxS; a negative component counts in bin 0.
bool GatherHistogram(const CShortImage& fused, const CImage& satuMask, int32_t nMaxS, HeapBuffer<int64_t>& hist)
{
    const size_t nBins = static_cast<size_t>(nMaxS) + 1;
    const size_t nTeam = static_cast<size_t>(MaxTeam());
    if (!hist.AllocateZero(nTeam * nBins)) return false;  // one per thread; the first becomes the sum
    ParallelRows(fused.nHeight, [&](RowBlock rows) {
        int64_t* pHist = hist.Data() + static_cast<size_t>(rows.nIndex) * nBins;
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const int16_t* pPixel = fused.Row(y);
            const uint8_t* pMask = satuMask.Row(y);
            for (int x = 0; x < fused.nWidth; ++x, pPixel += fused.nDim) {
                if (pMask[x] != 0) pHist[Clamp(GreatestComponent(pPixel), 0, nMaxS)] += pMask[x];
            }
        }
    });
    for (size_t i = 1; i < nTeam; ++i) {
        for (size_t n = 0; n < nBins; ++n) hist[n] += hist[i * nBins + n];
    }
    return true;
}

// The most frequent brightness. nStart, the mean, keeps its place against bins that only equal its own; of equal bins
// above it in number the lowest wins.
int32_t PeakBrightness(const HeapBuffer<int64_t>& hist, int32_t nMaxS, int32_t nStart)
{
    int32_t nPeak = nStart;
    int64_t nPeakCount = hist[static_cast<size_t>(std::max(nStart, 0))];
    for (int32_t i = 0; i <= nMaxS; ++i) {
        const int64_t nCount = hist[static_cast<size_t>(i)];
        if (nCount <= nPeakCount) continue;
        nPeak = i;
        nPeakCount = nCount;
    }
    return nPeak;
}

// The first bin where the running sum reaches nThre; 0 if it never does.
int32_t PercentileBrightness(const HeapBuffer<int64_t>& hist, int32_t nMaxS, int64_t nThre)
{
    int64_t nSum = 0;
    for (int32_t i = 0; i <= nMaxS; ++i) {
        nSum += hist[static_cast<size_t>(i)];
        if (nSum >= nThre) return i;
    }
    return 0;
}

// Lowers nMaxS to what the masked pixels tell.
bool LowerCeiling(const CShortImage& fused, const CImage& satuMask, const SaturationSums& sums, int32_t nSaturatePsThre,
                  int32_t& nMaxS)
{
    const int32_t nSaturatedY = static_cast<int32_t>(DivOrZero64(sums.nSumValue, sums.nSumMask));
    HeapBuffer<int64_t> hist;
    if (!GatherHistogram(fused, satuMask, nMaxS, hist)) return false;
    HdrPrintf("SaturatedY=%d ", nSaturatedY);
    const int32_t nPeakSaturatedY = PeakBrightness(hist, nMaxS, nSaturatedY);
    const int32_t nPtSaturatedY = PercentileBrightness(hist, nMaxS, (nSaturatePsThre * sums.nSumMask) >> 7);
    HdrPrintf("PeakSaturatedY=%d ", nPeakSaturatedY);
    HdrPrintf("PtSaturatedY=%d@Ps%f%%", nPtSaturatedY, nSaturatePsThre * 100.0 * 0.0078125);
    nMaxS = std::min({nMaxS, nSaturatedY, nPeakSaturatedY, nPtSaturatedY});
    return true;
}

// Base components above nMaxS become nMaxS. One pattern of limits for a run of whole pixels keeps the loop straight.
void ClipBase(CShortImage& fused, int32_t nMaxS)
{
    constexpr int kRun = 48;  // samples: eight pixels of six, a multiple of every vector width
    int16_t vLimit[kRun];
    for (int i = 0; i < kRun; ++i) {
        vLimit[i] = i % 6 < 3 ? static_cast<int16_t>(nMaxS) : std::numeric_limits<int16_t>::max();
    }
    ParallelRows(fused.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            int16_t* pRow = fused.Row(y);
            int i = 0;
            for (; i + kRun <= fused.RowSamples(); i += kRun) {
                for (int n = 0; n < kRun; ++n) pRow[i + n] = std::min(pRow[i + n], vLimit[n]);
            }
            for (int n = 0; i + n < fused.RowSamples(); ++n) pRow[i + n] = std::min(pRow[i + n], vLimit[n]);
        }
    });
}

}  // namespace

bool ClipSaturation(CShortImage& fused, const CImage& satuMask, int32_t nSaturatePsThre)
{
    if (fused.Empty() || fused.nDim != 6 || satuMask.Empty() || satuMask.nDim != 1) return false;
    if (satuMask.nWidth != fused.nWidth || satuMask.nHeight != fused.nHeight) return false;
    SaturationSums sums;
    if (!GatherSums(fused, satuMask, sums)) return false;
    const int32_t nLargest = std::max({sums.vMax[0], sums.vMax[1], sums.vMax[2]});
    HdrPrintf("MAX=[%d,%d,%d]", sums.vMax[0], sums.vMax[1], sums.vMax[2]);

    int32_t nMaxS = std::max(nLargest, 255);
    const bool bJudge = sums.nSumMask > int64_t{fused.nWidth} * fused.nHeight / 256;  // else too small an area
    if (bJudge && !LowerCeiling(fused, satuMask, sums, nSaturatePsThre, nMaxS)) return false;
    HdrPrintf("MAXS=%d\n", nMaxS);
    if (nMaxS < nLargest) ClipBase(fused, nMaxS);
    return true;
}

}  // namespace vkr
