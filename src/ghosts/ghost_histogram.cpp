#include "ghosts/ghost_histogram.h"

#include <algorithm>
#include <cmath>

namespace vkr {

namespace {

constexpr int kChannels = 3;
using Counts = uint32_t[kChannels][256];

uint32_t CountRow(const uint8_t* pBgr, const uint8_t* pMask, int nCount, Counts& counts)
{
    uint32_t nCounted = 0;
    for (int x = 0; x < nCount; ++x) {
        if (pMask[x] == 0) continue;
        for (int c = 0; c < kChannels; ++c) ++counts[c][pBgr[kChannels * x + c]];
        ++nCounted;
    }
    return nCounted;
}

int NearestShare(const float* pShares, float fShare)
{
    int nNearest = 0;
    for (int i = 1; i < 256; ++i) {
        if (std::fabs(pShares[i] - fShare) < std::fabs(pShares[nNearest] - fShare)) nNearest = i;
    }
    return nNearest;
}

}  // namespace

void BuildMaskHist_Integral(const CImage& frame, const CImage& mask, GhostShares& shares)
{
    Counts counts = {};
    uint32_t nCounted = 0;
    const int w = std::min(frame.nWidth, mask.nWidth);
    for (int y = 0; y < std::min(frame.nHeight, mask.nHeight); ++y) {
        nCounted += CountRow(frame.Row(y), mask.Row(y), w, counts);
    }
    for (int c = 0; c < kChannels; ++c) {
        float fSum = 0.0f;
        for (int v = 0; v < 256; ++v) {
            fSum += static_cast<float>(counts[c][v]);
            shares.vShares[c][v] = nCounted == 0 ? 0.0f : fSum / static_cast<float>(nCounted);
        }
    }
}

void MatchHistogram(const float* pFrom, const float* pTo, uint8_t* pTable)
{
    std::fill_n(pTable, 256, uint8_t{0});
    int nFilled = 0;
    for (int j = 0; j < 256; ++j) {
        const int nReached = NearestShare(pFrom, pTo[j]);
        for (; nFilled <= nReached; ++nFilled) pTable[nFilled] = static_cast<uint8_t>(j);
    }
}

}  // namespace vkr
