#include <algorithm>
#include <limits>

#include "align/patch_ssd.h"
#include "foundation/colour_rows.h"
#include "fusion/blend_weighted.h"
#include "fusion/laplacian_corrections.h"
#include "kernels/kernel_harness.h"
#include "local_curve/local_curve_rows.h"
#include "tone/face_tone_rows.h"
#include "tone/hsv_convert.h"
#include "tone/stretch_rows.h"
#include "warp/warp_rows.h"
#include "weights/normalize_weight.h"

namespace vkr {
namespace {

const std::vector<int> kExposures = {1, 2, 3, 4, 5, 6, 7, 8};

// A record in a row of its own, not compared.
template <class Record>
Record& Local(KernelRun& run)
{
    Record* const p = run.Scratch<Record>(1);
    return *p;
}

KERNEL(BgrToYCbCrRow, {{3}})
{
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    const bool bRedFirst = run.Flag();
    BOTH(BgrToYCbCrRow, pRow, run.Count(), bRedFirst);
}

KERNEL(YCbCrToBgrRow, {{3}})
{
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    auto* pCarry = reinterpret_cast<ColourCarry*>(run.InOut<uint8_t>(sizeof(ColourCarry)));
    const bool bRedFirst = run.Flag();
    BOTH(YCbCrToBgrRow, pRow, run.Count(), bRedFirst, *pCarry);
}

KERNEL(BgrToHsvRow, {{3}})
{
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    BOTH(BgrToHsvRow, pRow, pRow, run.Count());
}

KERNEL(HsvToBgrRow, {{3}})
{
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    BOTH(HsvToBgrRow, pRow, pRow, run.Count());
}

// Nine rows that stand nStride apart, with noise in all of them or in the middle one, where candidates are sifted.
Patch NoisyPatch(KernelRun& run, const uint8_t* pSamples, size_t nStride)
{
    Patch patch{};
    const int nNoise = run.OneOf({0, 1, 3, 29}), nOneIn = run.OneOf({0, 3, 9}), nOnlyRow = run.OneOf({-1, 4});
    for (int y = 0; y < kPatchSide; ++y) {
        for (int x = 0; x < kPatchSide; ++x) {
            const bool bNoisy = (nOnlyRow < 0 || y == nOnlyRow) && run.Number(0, nOneIn) == 0;
            const int nSample = pSamples[static_cast<size_t>(y) * nStride + x] + (bNoisy ? nNoise : 0);
            patch.vSamples[y * kPatchStride + x] = static_cast<uint8_t>(std::min(nSample, 255));
        }
    }
    return patch;
}

// Few grey values give equal and exact matches; a limit beside the lowest SSD takes or leaves it by one.
KERNEL(SearchGrid, {{1}, 1, 600, 1, false, 12})
{
    const int nRows = run.Number(1, 5), nMost = run.OneOf({0, 1, 2, 20, 255});
    const size_t nStride = static_cast<size_t>(run.Count()) + 8 + static_cast<size_t>(run.Number(0, 20));
    const uint8_t* pFirst = run.In<uint8_t>((nRows + 7) * nStride + run.Count() + 8 + kPatchReadAhead, 0, nMost);
    const PatchGrid grid = {pFirst, nStride, run.Count(), nRows, run.Number(-1, run.Count()), run.Number(-1, nRows)};
    const size_t nRow = static_cast<size_t>(run.Number(0, nRows - 1));
    const Patch patch = NoisyPatch(run, pFirst + nRow * nStride + run.Number(0, run.Count() - 1), nStride);
    PatchBest lowest = {kNoSSD, 0, 0};
    SearchGridScalar(patch, grid, lowest);
    const PatchBest start = {run.OneOf({kNoSSD, 7000, 40, 0, lowest.nSSD, lowest.nSSD + 1}), 7, 7};
    PatchBest best;
    const bool bFound = BOTH(SearchGrid, patch, grid, best = start);
    const int32_t vResult[4] = {bFound, best.nSSD, best.nColumn, best.nRow};
    std::copy_n(vResult, 4, run.Out<int32_t>(4));
}

KERNEL(SearchPatches, {{1}, 0, 200, 1, false, 8})
{
    const uint8_t* pSamples = run.In<uint8_t>(kPatchSide * kPatchSide, 0, run.OneOf({0, 2, 255}));
    std::vector<Patch> vPatches;
    for (int i = 0; i <= run.Count(); ++i) vPatches.push_back(NoisyPatch(run, pSamples, kPatchSide));
    const int32_t nStart = run.OneOf({kNoSSD, 100000, 100, 20, 1, 0});
    int32_t nBest;
    const int nFound = BOTH(SearchPatches, vPatches.back(), vPatches.data(), run.Count(), nBest = nStart);
    const int32_t vResult[2] = {nFound, nBest};
    std::copy_n(vResult, 2, run.Out<int32_t>(2));
}

KERNEL(WarpCellRow, {{1, 2}, 1, 4096, 1, false, 4})
{
    const int w = run.Count(), h = run.Number(1, 40), nDim = run.Dim();
    const int nNodes = (w * nDim + kWarpCell - 1) / kWarpCell * 2, nReach = run.OneOf({3, w * nDim, 4 * w * nDim});
    const size_t nSamples = static_cast<size_t>(w) * h * nDim;
    const WarpPlane plane = {run.In<uint8_t>(nSamples), w, h, nDim};
    float* pNodes = run.Scratch<float>(static_cast<size_t>(nNodes));
    for (int i = 0; i < nNodes; ++i) {
        constexpr float fNone = std::numeric_limits<float>::quiet_NaN(), fFar = std::numeric_limits<float>::infinity();
        pNodes[i] = static_cast<float>(run.Number(-nReach, nReach)) + static_cast<float>(run.Number(0, 1023)) / 1023;
        if (run.Number(0, 63) == 0) pNodes[i] = run.Flag() ? fNone : (run.Flag() ? fFar : -1e30f);
    }
    uint8_t* pDst = run.Out<uint8_t>(nSamples);
    const int nCellRow = run.Number(0, (h * nDim - 1) / kWarpCell);
    BOTH(WarpCellRow, plane, pNodes, nCellRow, pDst);
}

KERNEL(NormalizeWeightRun, {kExposures, 0, kRunPixels, 1, false, 16})
{
    const uint8_t* vRaw[kMaxExposures];
    const int nMost = run.OneOf({2, 128, 255});
    for (int k = 0; k < run.Dim(); ++k) vRaw[k] = run.In<uint8_t>(run.Count(), 0, nMost);
    WeightParams params{};
    params.bNormalizeWeightEnable = run.Number(0, 7) != 0;
    params.bMax2ExpWeightEnable = run.Flag();
    params.nDominateWTh = run.OneOf({0, 42, 43, 64, 80, 127, 128, 255});
    uint8_t* pWeights = run.Out<uint8_t>(run.Samples());
    BOTH(NormalizeWeightRun, vRaw, pWeights, run.Count(), run.Dim(), params);
}

// Detail of 9 bits, anything of 16, sums of weights of 0 and 1, and planes alike but for one: quotients beside every
// whole number.
KERNEL(BlendWeightedRun, {kExposures, 0, kRunPixels, 1, false, 8})
{
    const int nReach = run.OneOf({255, 32767}), nMost = run.OneOf({1, 128, 255});
    const bool bAlike = run.Flag();
    const int16_t* vPlanes[kMaxExposures];
    for (int k = 0; k < run.Dim(); ++k) {
        int16_t* pPlane = run.Scratch<int16_t>(run.Count());
        vPlanes[k] = pPlane;
        for (int x = 0; x < run.Count(); ++x) {
            const bool bCopied = bAlike && k > 0;
            pPlane[x] = static_cast<int16_t>(
                bCopied ? std::clamp(vPlanes[0][x] + (k == 2 ? run.Number(-1, 1) : 0), -32768, 32767)
                        : run.Number(-nReach - 1, nReach));
        }
    }
    uint8_t* pBytes = run.Scratch<uint8_t>(run.Samples());
    for (size_t i = 0; i < run.Samples(); ++i) {
        pBytes[i] = static_cast<uint8_t>(bAlike && i % run.Dim() == 2 ? 1 : run.Number(bAlike ? nMost - 1 : 0, nMost));
    }
    BlendWeights& weights = Local<BlendWeights>(run);
    TakeWeights(pBytes, run.Count(), run.Dim(), weights);
    int16_t* pDst = run.Out<int16_t>(run.Count());
    BOTH(BlendWeightedRun, weights, vPlanes, pDst);
}

// The rows of a run, to be compared.
void Keep(KernelRun& run, const LaplacianRun& laplacian)
{
    for (int c = 0; c < 3; ++c) {
        std::copy_n(laplacian.vDetail[c], run.Count(), run.Out<int16_t>(run.Count()));
        std::copy_n(laplacian.vUp[c], run.Count(), run.Out<uint8_t>(run.Count()));
    }
}

LaplacianRun& AnyRun(KernelRun& run)
{
    LaplacianRun& laplacian = Local<LaplacianRun>(run);
    laplacian.nCount = run.Count();
    for (int c = 0; c < 3; ++c) {
        std::copy_n(run.In<int16_t>(run.Count(), -255, 255), run.Count(), laplacian.vDetail[c]);
        std::copy_n(run.In<uint8_t>(run.Count()), run.Count(), laplacian.vUp[c]);
    }
    return laplacian;
}

KERNEL(SubtractUp, {{3}, 0, kRunPixels})
{
    const uint8_t *pLevel = run.In<uint8_t>(run.Samples()), *pUp = run.In<uint8_t>(run.Samples());
    LaplacianRun& laplacian = Local<LaplacianRun>(run);
    BOTH(SubtractUp, pLevel, pUp, run.Count(), laplacian);
    Keep(run, laplacian);
}

KERNEL(ApplyShadowDetailBoost, {{3}, 0, kRunPixels})
{
    LaplacianRun& laplacian = AnyRun(run);
    DetailGains gains;
    std::copy_n(run.In<int16_t>(256, 0, 128), 256, gains.vByLuma);
    BOTH(ApplyShadowDetailBoost, gains, laplacian);
    Keep(run, laplacian);
}

KERNEL(ApplyEdgeCompensation, {{3}, 0, kRunPixels})
{
    LaplacianRun& laplacian = AnyRun(run);
    const int nStep = run.OneOf({1, 3, 8});
    const int16_t* pCoefs = run.In<int16_t>(static_cast<size_t>(run.Count()) * nStep);
    BOTH(ApplyEdgeCompensation, pCoefs, nStep, laplacian);
    Keep(run, laplacian);
}

KERNEL(FaceToneRow, {{3}})
{
    const int nReach = run.OneOf({400, 32767}), nLow = run.OneOf({-255, -32, 0, 100, 200});
    const int16_t* pFused = run.In<int16_t>(2 * run.Samples(), -nReach - 1, nReach);
    ToneLut toneLut{};
    std::copy_n(run.In<uint8_t>(ToneLut::kEntries), ToneLut::kEntries, toneLut.vValue);
    const FaceRowLut lut = MakeFaceRowLut(toneLut, {nLow, nLow + run.OneOf({-140, 0, 255, 319, 767})});
    const bool bHighInside = run.Flag();
    uint8_t* pOut = run.Out<uint8_t>(run.Samples());
    BOTH(FaceToneRow, pFused, pOut, run.Count(), lut, bHighInside);
}

// Products of the base are exact up to 65536 either way and stay beyond that end where they are not.
KERNEL(StretchProducts, {{6}, 0, 4096, 1, false, 12})
{
    const int nReach = run.OneOf({300, 32767});
    const int16_t* pFused = run.In<int16_t>(run.Samples(), -nReach - 1, nReach);
    const int nScale = run.OneOf({0, 1, -1, 85, 256, 290, 340, 21760, 65280, -65280, -290});
    const StretchGain gain = {run.OneOf({-255, 0, 32, 255}), nScale, std::max(nScale, 256)};
    int32_t* pProducts = run.Out<int32_t>(run.Samples());
    BOTH(StretchProducts, pFused, pProducts, run.Count(), gain);
    for (size_t i = 0; i < run.Samples(); ++i) {
        if (i % 6 < 3) pProducts[i] = std::clamp(pProducts[i], -65537, 65537);
    }
}

KERNEL(StretchCarryRow, {{3}})
{
    const int32_t* pProducts = run.In<int32_t>(2 * run.Samples(), -30000, 70000);
    GammaLut lut;
    std::copy_n(run.In<uint8_t>(256), 256, lut.vValue);
    StretchCarry carry;
    std::copy_n(run.In<int32_t>(3, -255, 255), 3, carry.vRest);
    uint8_t* pOut = run.Out<uint8_t>(run.Samples());
    BOTH(StretchCarryRow, pProducts, pOut, run.Count(), lut, carry);
    std::copy_n(carry.vRest, 3, run.Out<int32_t>(3));
}

// Curves that rise by any steps, blocks of any size: more than one run, and the last one cut.
KERNEL(MapCurveRow, {{3}, 1})
{
    const int nColumns = run.Number(1, 5), nRows = run.Number(1, 3), h = run.Number(1, 9);
    const BlockGeometry geometry = MakeBlockGeometry(run.Count(), h, nColumns, nRows);
    std::vector<BlockTable> vTables(static_cast<size_t>(nColumns) * nRows);
    for (BlockTable& table : vTables) {
        int32_t vCurves[4][kCurvePoints];
        for (auto& curve : vCurves) {
            for (int32_t& n : curve) n = run.Number(0, 256);
            if (run.Flag()) std::sort(std::begin(curve), std::end(curve));
        }
        const int32_t* const vNodes[4] = {vCurves[0], vCurves[1], vCurves[2], vCurves[3]};
        MakeBlockTable(vNodes, table);
    }
    const CurveMapping mapping = {geometry, vTables.data(), nColumns, run.OneOf({0, 5, 16}),
                                  run.OneOf({0, 0, 64, -128, 256, -256})};
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    const int y = run.Number(0, h - 1);
    BOTH(MapCurveRow, pRow, y, mapping);
}

}  // namespace
}  // namespace vkr
