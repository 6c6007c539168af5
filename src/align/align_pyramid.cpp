#include "align/align_pyramid.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

namespace {

// Four counters a grey value: equal neighbours do not wait for each other.
void MeasureShares(const CImage& level, float* pShares)
{
    uint32_t vPhases[4][256] = {};
    const size_t nSamples = level.Samples();
    size_t i = 0;
    for (; i + 4 <= nSamples; i += 4) {
        for (int c = 0; c < 4; ++c) ++vPhases[c][level.pData[i + c]];
    }
    for (; i < nSamples; ++i) ++vPhases[i & 3][level.pData[i]];
    uint32_t nSum = 0;
    for (int v = 0; v < 256; ++v) {
        nSum += vPhases[0][v] + vPhases[1][v] + vPhases[2][v] + vPhases[3][v];
        pShares[v] = static_cast<float>(nSum) / static_cast<float>(nSamples);
    }
}

void MapSamples(CImage& level, const uint8_t* pTable)
{
    const size_t nRowSamples = static_cast<size_t>(level.RowSamples());
    ParallelRows(level.nHeight, [&](RowBlock block) {
        uint8_t* const pBegin = level.pData + static_cast<size_t>(block.nBegin) * nRowSamples;
        uint8_t* const pEnd = level.pData + static_cast<size_t>(block.nEnd) * nRowSamples;
        for (uint8_t* p = pBegin; p != pEnd; ++p) *p = pTable[*p];
    });
}

}  // namespace

void MatchShares(const float* pFrom, const float* pTo, uint8_t* vTable)
{
    for (int a = 0; a < 256; ++a) {
        int nBest = 0;
        for (int b = 1; b < 256; ++b) {
            if (std::fabs(pFrom[a] - pTo[b]) < std::fabs(pFrom[a] - pTo[nBest])) nBest = b;
        }
        vTable[a] = static_cast<uint8_t>(nBest);
    }
}

bool AlignPyramids::Build(const CYuvImage* vFrames, int nExposureNum, const AlignPyramidParams& params)
{
    Release();
    m_nExposureNum = nExposureNum;
    m_nLevels = params.nTopLevel + 1;
    std::atomic<bool> bDone{true};
    ParallelItems(nExposureNum, [&](int i) {
        if (!BuildOne(vFrames[i], i, params)) bDone = false;
    });
    return bDone;
}

bool AlignPyramids::BuildOne(const CYuvImage& frame, int i, const AlignPyramidParams& params)
{
    CImage* const pLevels = m_vLevels[i];
    if (!pLevels[0].AllocateGray(frame.nWidth, frame.nHeight)) return false;
    std::memcpy(pLevels[0].pData, frame.pY, pLevels[0].Samples());
    for (int k = 0; k < params.nTopLevel; ++k) {
        const StageTimer timer("==== ==== ==== DownScaleImage Done");
        if (!HalveImage(pLevels[k], pLevels[k + 1], params.bFilter, params.bDither)) return false;
    }
    HdrPrintf("m_nHistogramMatchingLevel %d\n", params.nHistogramLevel);
    HdrLog("m_nHistogramMatchingLevel %d ", params.nHistogramLevel);
    const StageTimer timer("==== ==== ==== GetHistogram Done");
    MeasureShares(pLevels[params.nHistogramLevel], m_fCDF[i]);
    return true;
}

void AlignPyramids::MapHistogram(int j)
{
    const StageTimer timer("==== ==== ==== HistMapping Done");
    uint8_t vTable[256];
    MatchShares(m_fCDF[j], m_fCDF[j + 1], vTable);
    for (int k = 0; k < m_nLevels; ++k) MapSamples(m_vLevels[j][k], vTable);
}

void AlignPyramids::Release()
{
    for (auto& vLevels : m_vLevels) {
        for (CImage& level : vLevels) level.Release();
    }
    m_nExposureNum = m_nLevels = 0;
}

}  // namespace vkr
