#include "pictures/picture_shift.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

constexpr int kCoarseSide = 64;  // longer side of the level where the whole reach is tried
constexpr int kLeastSide = 8;    // of the shorter one
constexpr int kParts = 3;        // each way, where places are compared one by one

// Every value replaced by its rank in the picture, 0 .. 255: the same for all exposures, as long as nothing clips. All
// equal values share the rank of their middle.
Raster RankPicture(const Raster& grey)
{
    std::array<size_t, 256> vCount{};
    for (const uint8_t n : grey.vSamples) ++vCount[n];
    std::array<uint8_t, 256> vRank{};
    size_t nBelow = 0;
    for (size_t v = 0; v < vCount.size(); ++v) {
        vRank[v] = static_cast<uint8_t>((2 * nBelow + vCount[v]) * 255 / (2 * grey.vSamples.size()));
        nBelow += vCount[v];
    }
    Raster ranks = grey;
    for (uint8_t& n : ranks.vSamples) n = vRank[n];
    return ranks;
}

int RowDistance(const uint8_t* pFirst, const uint8_t* pSecond, int nCount)
{
    int nSum = 0;
    for (int x = 0; x < nCount; ++x) nSum += std::abs(pFirst[x] - pSecond[x]);
    return nSum;
}

// Mean distance where the pictures overlap under this shift, which leaves some of both.
double Distance(const Raster& first, const Raster& second, Shift shift)
{
    const int nWidth = first.nWidth - std::abs(shift.nX), nHeight = first.nHeight - std::abs(shift.nY);
    const int nFirstX = std::max(-shift.nX, 0), nFirstY = std::max(-shift.nY, 0);
    int64_t nSum = 0;
    for (int y = nFirstY; y < nFirstY + nHeight; ++y) {
        nSum += RowDistance(first.Row(y) + nFirstX, second.Row(y + shift.nY) + nFirstX + shift.nX, nWidth);
    }
    return static_cast<double>(nSum) / nWidth / nHeight;
}

// The best shift within nReach of this one, which wins a tie.
Shift BestAround(const Raster& first, const Raster& second, Shift centre, int nReach)
{
    Shift best = centre;
    double fBest = Distance(first, second, centre);
    for (int nY = centre.nY - nReach; nY <= centre.nY + nReach; ++nY) {
        for (int nX = centre.nX - nReach; nX <= centre.nX + nReach; ++nX) {
            const double fDistance = Distance(first, second, {nX, nY});
            if (fDistance >= fBest) continue;
            fBest = fDistance;
            best = {nX, nY};
        }
    }
    return best;
}

// One of the kParts x kParts parts of a picture of one channel.
Raster PartOf(const Raster& raster, int nColumn, int nRow)
{
    Raster part;
    part.Resize(raster.nWidth / kParts, raster.nHeight / kParts, 1);
    for (int y = 0; y < part.nHeight; ++y) {
        std::copy_n(raster.Row(nRow * part.nHeight + y) + nColumn * part.nWidth, part.nWidth, part.Row(y));
    }
    return part;
}

// By more than one pixel, and to a place that fits better by more than a sixteenth.
bool WantsToMove(const Raster& first, const Raster& second)
{
    const Shift shift = FindShift(first, second);
    if (std::abs(shift.nX) <= 1 && std::abs(shift.nY) <= 1) return false;
    const Raster vRanks[2] = {RankPicture(first), RankPicture(second)};
    return 16 * Distance(vRanks[0], vRanks[1], {}) > 17 * Distance(vRanks[0], vRanks[1], shift);
}

}  // namespace

bool LiesWell(const Raster& first, const Raster& second)
{
    int nMoving = 0;
    for (int nRow = 0; nRow < kParts; ++nRow) {
        for (int nColumn = 0; nColumn < kParts; ++nColumn) {
            if (WantsToMove(PartOf(first, nColumn, nRow), PartOf(second, nColumn, nRow))) ++nMoving;
        }
    }
    return 2 * nMoving < kParts * kParts;
}

Shift FindShift(const Raster& first, const Raster& second)
{
    const int nLonger = std::max(first.nWidth, first.nHeight), nShorter = std::min(first.nWidth, first.nHeight);
    if (nShorter < kLeastSide) return {};
    const Raster vRanks[2] = {RankPicture(first), RankPicture(second)};
    if (nLonger <= kCoarseSide || nShorter < 2 * kLeastSide) {
        return BestAround(vRanks[0], vRanks[1], {}, std::min(nLonger, kCoarseSide) / 8);
    }
    const Shift coarse = FindShift(ScaleDown(first, 2), ScaleDown(second, 2));
    return BestAround(vRanks[0], vRanks[1], {2 * coarse.nX, 2 * coarse.nY}, 1);
}

}  // namespace vkr::tool
