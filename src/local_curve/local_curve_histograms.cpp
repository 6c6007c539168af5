#include <algorithm>

#include "foundation/fixed_point.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "local_curve/local_auto_curve_filter.h"

namespace vkr {

namespace {

int64_t SumOf(const int32_t* pHist)
{
    int64_t nSum = 0;
    for (int i = 0; i < kCurveBins; ++i) nSum += pHist[i];
    return nSum;
}

// Adds nCount pixels to a histogram of luma in steps of 4.
void CountPixels(const uint8_t* pPixel, int nCount, int32_t* pHist)
{
    for (int x = 0; x < nCount; ++x, pPixel += 3) ++pHist[(2 * pPixel[0] + 9 * pPixel[1] + 5 * pPixel[2]) >> 6];
}

}  // namespace

void CLocalAutoCurveFilter::SetBlockGeometry(int32_t nWidth, int32_t nHeight)
{
    m_geometry = MakeBlockGeometry(nWidth, nHeight, nWinXNum, nWinYNum);
}

void CLocalAutoCurveFilter::GetBlockHistograms(const CImage& image)
{
    std::fill_n(&m_BlockHist[0][0][0], kMaxBlocks * kMaxBlocks * kCurveBins, 0);
    std::fill_n(m_GlobalHist, kCurveBins, 0);
    ParallelItems(nWinYNum, [&](int nBlockRow) { CountBlockRow(image, nBlockRow); });  // each its own histograms
    for (int y = 0; y < nWinYNum; ++y) {
        for (int x = 0; x < nWinXNum; ++x) {
            for (int i = 0; i < kCurveBins; ++i) m_GlobalHist[i] += m_BlockHist[y][x][i];
        }
    }
    for (int y = 0; y < nWinYNum; ++y) {
        for (int x = 0; x < nWinXNum; ++x) {
            const int64_t nOwn = SumOf(m_BlockHist[y][x]);
            MixGlobalHistogram(m_BlockHist[y][x], nOwn != 0 ? nOwn : FillEmptyBlock(y, x));
        }
    }
}

void CLocalAutoCurveFilter::CountBlockRow(const CImage& image, int nBlockRow)
{
    const int nBegin = std::min(nBlockRow * m_geometry.m_nBlockH, image.nHeight);
    const int nEnd = std::min(nBegin + m_geometry.m_nBlockH, image.nHeight);
    for (int y = nBegin; y < nEnd; ++y) {
        const uint8_t* pPixel = image.Row(y);
        int nLeft = image.nWidth;
        for (int nBlock = 0; nLeft > 0; ++nBlock) {
            const int nCount = std::min(nLeft, m_geometry.m_nBlockW);
            CountPixels(pPixel, nCount, m_BlockHist[nBlockRow][nBlock]);
            pPixel += 3 * nCount;
            nLeft -= nCount;
        }
    }
}

// A block without pixels, which a picture narrower or lower than the grid gives, takes an even histogram of an even
// share of the picture. Returns that share, which the bins, truncated, need not sum to.
int64_t CLocalAutoCurveFilter::FillEmptyBlock(int nBlockRow, int nBlockCol)
{
    HdrPrintf("Error configuration in block (%d,%d), using a plain hist as default\n", nBlockRow, nBlockCol);
    const int64_t nPixels = int64_t{m_geometry.m_nWidth} * m_geometry.m_nHeight;
    const int64_t nShare = nPixels / (int64_t{nWinXNum} * nWinYNum);
    std::fill_n(m_BlockHist[nBlockRow][nBlockCol], kCurveBins, static_cast<int32_t>(nShare >> 6));
    return nShare;
}

// The block's histogram of nCount pixels, brought to the size of the whole picture's, is mixed with that.
void CLocalAutoCurveFilter::MixGlobalHistogram(int32_t* pHist, int64_t nCount) const
{
    const int64_t nScale = DivOrZero64(SumOf(m_GlobalHist) * 256, nCount);  // Q8
    for (int i = 0; i < kCurveBins; ++i) {
        const int64_t nLocal = (pHist[i] * nScale) >> 8;
        const int64_t nMixed = int64_t{m_GlobalHist[i]} * (16 - nLocalWeight) + nLocalWeight * nLocal;
        pHist[i] = static_cast<int32_t>(nMixed >> 4);
    }
}

}  // namespace vkr
