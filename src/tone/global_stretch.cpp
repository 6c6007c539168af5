#include "tone/global_stretch.h"

#include <algorithm>

#include "foundation/bmp.h"
#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "tone/brightness_statistics.h"
#include "tone/clip_saturation.h"
#include "tone/stretch_levels.h"
#include "tone/stretch_rows.h"
#include "tone/tone_curve.h"

namespace vkr {

namespace {

// The base alone (nHigh 0) or with its high frequencies (nHigh 1), clipped to 8 bits.
void FillUnstretched(const CShortImage& fused, int nHigh, CImage& out)
{
    ParallelRows(fused.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const int16_t* pIn = fused.Row(y);
            uint8_t* pOut = out.Row(y);
            for (int x = 0; x < fused.nWidth; ++x, pIn += 6, pOut += 3) {
                for (int c = 0; c < 3; ++c) pOut[c] = ClampU8(pIn[c] + nHigh * pIn[3 + c]);
            }
        }
    });
}

void DumpUnstretched(const CShortImage& fused, CImage& out)
{
    FillUnstretched(fused, 1, out);
    SaveBmp(out, "Dump/FusionWithHighFeq.bmp", true);
    FillUnstretched(fused, 0, out);
    SaveBmp(out, "Dump/FusionNoHighFeq.bmp", true);
}

// Brings the levels up to date and makes the gain that takes them to 0 .. 255; without a keep-detail flag the base
// passes through.
bool ChooseGain(const CShortImage& fused, const ToneParams& params, StretchLevels& levels, StretchGain& gain)
{
    gain = {0, 256, 256};
    if (!params.bKeepHighLightDetailEnable && !params.bKeepDarkDetailEnable) return true;

    HeapBuffer<int32_t> hist;
    if (!hist.AllocateZero(static_cast<size_t>(BrightnessBins(params)))) return false;
    if (!GetBrightnessHistogram(fused, params, hist.Data())) return false;
    GetStretchLevels(hist.Data(), int64_t{fused.nWidth} * fused.nHeight, params, levels);

    gain.nLow = levels.m_nLowLevel;
    gain.nScale = DivOrZero(65280, levels.m_nHighLevel - levels.m_nLowLevel);  // 255 in 8.8
    gain.nHighGain = std::max(gain.nScale, 256);
    HdrPrintf("LowLevel = %d, HighLevel=%d, scale = %d\n", gain.nLow, levels.m_nHighLevel, gain.nScale);
    return true;
}

// Serial: the carries run along the raster, across row ends. One row of products at a time, so that they stay in the
// cache.
bool StretchPicture(const CShortImage& fused, const StretchGain& gain, const GammaLut& gammaLut, CImage& out)
{
    HeapBuffer<int32_t> products;
    if (!products.Allocate(static_cast<size_t>(fused.RowSamples()))) return false;
    StretchCarry carry{};
    for (int y = 0; y < fused.nHeight; ++y) {
        StretchProducts(fused.Row(y), products.Data(), fused.nWidth, gain);
        StretchCarryRow(products.Data(), out.Row(y), fused.nWidth, gammaLut, carry);
    }
    return true;
}

bool Stretch(CShortImage& fused, const CImage& satuMask, int bCheckSatu, const ToneParams& params, int bDump,
             StretchLevels& levels, CImage& out)
{
    if (fused.Empty() || fused.nDim != 6) return false;
    if (bCheckSatu && !ClipSaturation(fused, satuMask, params.nSaturatePsThre)) return false;
    const int32_t nInMean = GetMeanBrightness(fused, params.nHistStatType);
    HdrPrintf("InMean=%d\n", nInMean);
    if (!out.Allocate(fused.nWidth, fused.nHeight)) return false;
    if (bDump) DumpUnstretched(fused, out);

    StretchGain gain;
    if (!ChooseGain(fused, params, levels, gain)) return false;
    const int32_t nOutMean = static_cast<int32_t>(int64_t{nInMean - gain.nLow} * gain.nScale / 256);
    HdrPrintf("OutMeanY bf=%d\n", nOutMean);

    GammaLut gammaLut;
    BuildGammaLut(nInMean, nOutMean, params, gammaLut);  // the identity where no curve applies
    if (!StretchPicture(fused, gain, gammaLut, out)) return false;
    if (bDump) SaveBmp(out, "Dump/Stretch.bmp", true);
    return true;
}

}  // namespace

bool GlobalStretch(CShortImage& fused, const CImage& satuMask, int bCheckSatu, const ToneParams& params, int bDump,
                   StretchLevels& levels, CImage& out)
{
    if (Stretch(fused, satuMask, bCheckSatu, params, bDump, levels, out)) return true;
    out.Release();
    return false;
}

}  // namespace vkr
