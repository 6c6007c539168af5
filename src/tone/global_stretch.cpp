#include "tone/global_stretch.h"

#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/log.h"
#include "tone/brightness_statistics.h"
#include "tone/clip_saturation.h"
#include "tone/fused_dump.h"
#include "tone/stretch_levels.h"
#include "tone/stretch_rows.h"
#include "tone/tone_curve.h"

namespace vkr {

namespace {

// Brings the levels up to date and makes the gain that takes them to 0 .. 255; without a keep-detail flag the base
// passes through.
bool ChooseGain(const CShortImage& fused, const ToneParams& params, StretchLevels& levels, StretchGain& gain)
{
    gain = {0, 256, 256};
    if (!KeepsDetail(params)) return true;

    if (!FollowStretchLevels(fused, params, levels)) return false;
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

bool Stretch(CShortImage& fused, const CImage& satuMask, int bCheckSatu, const ToneParams& params,
             const StageDumps& dumps, StretchLevels& levels, CImage& out)
{
    if (fused.Empty() || fused.nDim != 6) return false;
    if (bCheckSatu && !ClipSaturation(fused, satuMask, params.nSaturatePsThre)) return false;
    const int32_t nInMean = GetMeanBrightness(fused, params.nHistStatType);
    HdrPrintf("InMean=%d\n", nInMean);
    if (!out.Allocate(fused.nWidth, fused.nHeight)) return false;
    if (dumps) DumpFused(fused, out);

    StretchGain gain;
    if (!ChooseGain(fused, params, levels, gain)) return false;
    const int32_t nOutMean = static_cast<int32_t>(int64_t{nInMean - gain.nLow} * gain.nScale / 256);
    HdrPrintf("OutMeanY bf=%d\n", nOutMean);

    GammaLut gammaLut;
    BuildGammaLut(nInMean, nOutMean, params, gammaLut);  // the identity where no curve applies
    if (!StretchPicture(fused, gain, gammaLut, out)) return false;
    dumps.Save(out, "Dump/Stretch.bmp");
    return true;
}

}  // namespace

bool GlobalStretch(CShortImage& fused, const CImage& satuMask, int bCheckSatu, const ToneParams& params,
                   const StageDumps& dumps, StretchLevels& levels, CImage& out)
{
    if (Stretch(fused, satuMask, bCheckSatu, params, dumps, levels, out)) return true;
    out.Release();
    return false;
}

}  // namespace vkr
