#include "weights/build_weight.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"
#include "primitives/smooth.h"
#include "weights/brightness_weight.h"
#include "weights/normalize_weight.h"

namespace vkr {

namespace {

constexpr auto kReadyPoll = std::chrono::milliseconds(5);

bool CountFits(int nExposureNum)
{
    return nExposureNum >= 1 && nExposureNum <= kMaxExposures;
}

bool FramesFit(const CImage* vFrames, int nExposureNum)
{
    return std::all_of(vFrames, vFrames + nExposureNum, [&](const CImage& frame) {
        return !frame.Empty() && frame.nDim == 3 && frame.nWidth == vFrames[0].nWidth &&
               frame.nHeight == vFrames[0].nHeight;
    });
}

// Always with the carry: weights are drawn from sums, not from roundings.
bool SmoothOne(const CImage& frame, CImage& smoothed)
{
    return !frame.Empty() && CSmoothFilter5x5::SmoothImage8(frame, smoothed, true);
}

// Exposures in the order in which they get ready, each as soon as it is.
bool SmoothWhenReady(const CImage* vFrames, int nExposureNum, ReadyFlags& flags, CImage* vSmoothed)
{
    for (int nTaken = 0; nTaken < nExposureNum;) {
        const int k = flags.TakeReady(nExposureNum);
        if (k < 0) {
            std::this_thread::sleep_for(kReadyPoll);
            continue;
        }
        if (!SmoothOne(vFrames[k], vSmoothed[k])) return false;
        ++nTaken;
    }
    return true;
}

bool SmoothAll(const CImage* vFrames, int nExposureNum, CImage* vSmoothed)
{
    std::atomic<bool> bAllDone{true};
    ParallelItems(nExposureNum, [&](int k) {
        if (!SmoothOne(vFrames[k], vSmoothed[k])) bAllDone.store(false, std::memory_order_relaxed);
    });
    return bAllDone;
}

// Weights of nCount pixels (at most kRunPixels) from x on: brightness of each exposure, through the table where there
// is one, normalised.
void WeighRun(const CImage* vSmoothed, int nExposureNum, int x, int y, int nCount, const BrightnessTable* pTable,
              const WeightParams& params, uint8_t* pWeights)
{
    uint8_t vPlanes[kMaxExposures][kRunPixels];
    const uint8_t* vRaw[kMaxExposures];
    for (int k = 0; k < nExposureNum; ++k) {
        BrightnessRun(params.nFusionWeightSelect, vSmoothed[k].Row(y) + 3 * x, vPlanes[k], nCount);
        if (pTable != nullptr) {
            for (uint8_t* p = vPlanes[k]; p < vPlanes[k] + nCount; ++p) *p = pTable->vRows[k][*p];
        }
        vRaw[k] = vPlanes[k];
    }
    NormalizeWeightRun(vRaw, pWeights + x * nExposureNum, nCount, nExposureNum, params);
}

void WeighPixels(const CImage* vSmoothed, int nExposureNum, const BrightnessTable* pTable, const WeightParams& params,
                 CImage& weights)
{
    ParallelRows(weights.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            for (int x = 0; x < weights.nWidth; x += kRunPixels) {
                const int nCount = std::min(kRunPixels, weights.nWidth - x);
                WeighRun(vSmoothed, nExposureNum, x, y, nCount, pTable, params, weights.Row(y));
            }
        }
    });
}

// Levels below level 0; returns their number with it, 0 when there was no memory. The width alone ends the pyramid:
// fusion stops at the smaller side, so it never needs more levels than stand here.
int BuildWeightPyramid(CImage* vWeights, const PyramidParams& pyramid)
{
    for (int i = 0; i < kMaxLevels; ++i) {
        const CImage& level = vWeights[i];
        HdrPrintf("Build Weight Pyramid: Level%d size=[%dx%d]\n", i, level.nWidth, level.nHeight);
        const bool bLast = level.nWidth <= 1 << pyramid.nTopLevel || i + 1 == kMaxLevels;
        if (!bLast && !HalveImage(level, vWeights[i + 1], pyramid.bPyramidFilter, pyramid.bDownScaleOtherDither)) {
            return 0;
        }
        HdrPrintf("\n");
        if (bLast) return i + 1;
    }
    return 0;
}

}  // namespace

int BuildWeight(const WorkBurst& burst, const WeightParams& params, const FaceAim& face, const PyramidParams& pyramid,
                ReadyFlags& flags, CImage* vWeights)
{
    const CImage* vFrames = burst.vFrames;
    const int nExposureNum = burst.nExposureNum;
    if (!CountFits(nExposureNum)) return 0;
    CImage vSmoothed[kMaxExposures] = {};
    ImageScope scope(vSmoothed);
    BrightnessTable table;
    FillBrightnessTable(table, nExposureNum, burst.nReference, params, face);
    if (!SmoothWhenReady(vFrames, nExposureNum, flags, vSmoothed) || !FramesFit(vSmoothed, nExposureNum)) return 0;
    if (!vWeights[0].AllocateDim(vFrames[0].nWidth, vFrames[0].nHeight, nExposureNum)) return 0;
    WeighPixels(vSmoothed, nExposureNum, &table, params, vWeights[0]);
    for (CImage& smoothed : vSmoothed) smoothed.Release();
    const int nLevels = BuildWeightPyramid(vWeights, pyramid);
    HdrPrintf("Total Levels=%d\n", nLevels);
    HdrPrintf("=========================done=============================\n");
    return nLevels;
}

int RebuildWeight(const WorkBurst& burst, const WeightParams& params, const FaceAim& face, const PyramidParams& pyramid,
                  CImage* vWeights)
{
    const CImage* vFrames = burst.vFrames;
    const int nExposureNum = burst.nExposureNum;
    if (!CountFits(nExposureNum) || !FramesFit(vFrames, nExposureNum)) return 0;
    if (!vWeights[0].AllocateDim(vFrames[0].nWidth, vFrames[0].nHeight, nExposureNum)) return 0;
    CImage vSmoothed[kMaxExposures] = {};
    ImageScope scope(vSmoothed);

    GoalTimer smoothTimer("==== ==== ==== ==== BuildWeight First Done");
    BrightnessTable table;
    FillBrightnessTable(table, nExposureNum, burst.nReference, params, face);
    if (!SmoothAll(vFrames, nExposureNum, vSmoothed)) return 0;
    smoothTimer.Reached();

    // Only the largest sample goes through the table here; luma and smallest sample are the raw weights themselves,
    // unlike in the first build. Results rest on it.
    const BrightnessTable* pTable = params.nFusionWeightSelect == kLargestSample ? &table : nullptr;
    TimedStage("==== ==== ==== ==== BuildWeight Mid Done", [&] {
        WeighPixels(vSmoothed, nExposureNum, pTable, params, vWeights[0]);
        for (CImage& smoothed : vSmoothed) smoothed.Release();
    });

    GoalTimer pyramidTimer("==== ==== ==== ==== BuildWeight Last Done");
    const int nLevels = BuildWeightPyramid(vWeights, pyramid);
    if (nLevels == 0) return 0;
    pyramidTimer.Reached();
    HdrPrintf("Total Levels=%d\n", nLevels);
    return nLevels;
}

}  // namespace vkr
