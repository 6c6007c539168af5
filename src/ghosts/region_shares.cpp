#include "ghosts/region_shares.h"

#include <algorithm>
#include <limits>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/image_scope.h"
#include "ghosts/embedding_dump.h"
#include "primitives/smooth.h"

namespace vkr {

namespace {

constexpr int kInside = 128;
constexpr int kReach = 2;  // pixels that one smoothing carries a value

// Pixels x1 .. x2 - 1, y1 .. y2 - 1.
struct Box {
    int x1, y1, x2, y2;
};

void BoundRegions(const CLabelImage& labels, Box* pBoxes, int nRegions)
{
    std::fill_n(pBoxes, nRegions, Box{labels.nWidth, labels.nHeight, 0, 0});
    for (int y = 0; y < labels.nHeight; ++y) {
        const int32_t* pLabels = labels.Row(y);
        for (int x = 0; x < labels.nWidth; ++x) {
            if (pLabels[x] == 0) continue;
            Box& box = pBoxes[pLabels[x] - 1];
            box = {std::min(box.x1, x), std::min(box.y1, y), std::max(box.x2, x + 1), std::max(box.y2, y + 1)};
        }
    }
}

Box Grow(const Box& box, int n, const CLabelImage& labels)
{
    return {std::max(box.x1 - n, 0), std::max(box.y1 - n, 0), std::min(box.x2 + n, labels.nWidth),
            std::min(box.y2 + n, labels.nHeight)};
}

// 128 where the region is; what else the map holds stays. No sample of it is above 128, so this is the larger of both.
void PaintInside(const CLabelImage& labels, int nLabel, const Box& box, CShortImage& map)
{
    for (int y = box.y1; y < box.y2; ++y) {
        const int32_t* pLabels = labels.Row(y) + box.x1;
        int16_t* pMap = map.Row(y - box.y1);
        for (int x = 0; x < map.nWidth; ++x) {
            if (pLabels[x] == nLabel) pMap[x] = kInside;
        }
    }
}

void AddToShares(const CShortImage& map, const Box& box, int nChosen, CShortImage& shares)
{
    for (int y = box.y1; y < box.y2; ++y) {
        const int16_t* pMap = map.Row(y - box.y1);
        int16_t* pShares = shares.Row(y) + box.x1 * shares.nDim + nChosen;
        for (int x = 0; x < map.nWidth; ++x, pShares += shares.nDim) {
            *pShares = static_cast<int16_t>(std::min<int32_t>(*pShares + pMap[x], std::numeric_limits<int16_t>::max()));
        }
    }
}

// The map of one region within box, which leaves room for all rounds of smoothing: outside it the map of the whole
// picture would be 0, and a smoothing that meets nothing but zeros hands its carry on as it is.
bool MapRegion(const CLabelImage& labels, int nLabel, const Box& box, int nSmoothIter, const StageDumps& dumps,
               CShortImage& map)
{
    if (!map.AllocateDim(box.x2 - box.x1, box.y2 - box.y1, 1)) return false;
    std::fill_n(map.pData, map.Samples(), int16_t{0});
    PaintInside(labels, nLabel, box, map);
    if (dumps) DumpRegionMap(map, box.x1, box.y1, labels.nWidth, labels.nHeight, nLabel - 1, "bf");
    for (int i = 0; i < nSmoothIter; ++i) {
        if (!CSmoothFilter5x5::SmoothImage16(map, map, true)) return false;
        PaintInside(labels, nLabel, box, map);
    }
    if (dumps) DumpRegionMap(map, box.x1, box.y1, labels.nWidth, labels.nHeight, nLabel - 1, "aft");
    return true;
}

}  // namespace

bool ShareRegions(const CLabelImage& labels, const int32_t* pChosen, int nRegions, int nExposureNum, int nSmoothIter,
                  const StageDumps& dumps, CShortImage& shares)
{
    HeapBuffer<Box> boxes;
    CShortImage map{};
    ImageScope scope(map);
    if (!boxes.Allocate(static_cast<size_t>(nRegions)) ||
        !shares.AllocateDim(labels.nWidth, labels.nHeight, nExposureNum)) {
        return false;
    }
    std::fill_n(shares.pData, shares.Samples(), int16_t{0});
    BoundRegions(labels, boxes.Data(), nRegions);
    for (int r = 0; r < nRegions; ++r) {
        const Box box = Grow(boxes[static_cast<size_t>(r)], kReach * nSmoothIter, labels);
        if (!MapRegion(labels, r + 1, box, nSmoothIter, dumps, map)) return false;
        AddToShares(map, box, pChosen[r], shares);
    }
    return true;
}

bool ShareWholePicture(int w, int h, int nChosen, int nExposureNum, CShortImage& shares)
{
    if (!shares.AllocateDim(w, h, nExposureNum)) return false;
    std::fill_n(shares.pData, shares.Samples(), int16_t{0});
    const size_t nDim = static_cast<size_t>(nExposureNum);
    for (size_t i = static_cast<size_t>(nChosen); i < shares.Samples(); i += nDim) shares.pData[i] = kInside;
    return true;
}

}  // namespace vkr
