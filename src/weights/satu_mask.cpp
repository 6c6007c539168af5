#include "weights/satu_mask.h"

#include <algorithm>

#include "foundation/parallel_rows.h"
#include "weights/brightness_weight.h"

namespace vkr {

namespace {

constexpr int kDegreeZero = 239;  // smallest sample of degree 0; 255 has degree 16

// nLowest: degrees below it are not kept.
void MarkRow(const uint8_t* pBgr, uint8_t* pMask, int nWidth, int nLowest)
{
    for (int nBegin = 0; nBegin < nWidth; nBegin += kRunPixels) {
        const int nCount = std::min(kRunPixels, nWidth - nBegin);
        uint8_t vSmallest[kRunPixels];
        BrightnessRun(kSmallestSample, pBgr + 3 * nBegin, vSmallest, nCount);
        for (int x = 0; x < nCount; ++x) {
            const int nDegree = vSmallest[x] - kDegreeZero;
            pMask[nBegin + x] = static_cast<uint8_t>(nDegree >= nLowest ? nDegree : 0);
        }
    }
}

}  // namespace

bool GenerateSatuMask(const CImage& darkest, int nSaturateThre, CImage& mask)
{
    if (darkest.Empty() || darkest.nDim != 3 || !mask.AllocateGray(darkest.nWidth, darkest.nHeight)) return false;
    const int nLowest = std::max(nSaturateThre, 1);  // degrees below 1 are not saturated whatever the threshold
    ParallelRows(darkest.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) MarkRow(darkest.Row(y), mask.Row(y), darkest.nWidth, nLowest);
    });
    return true;
}

}  // namespace vkr
