#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"
#include "foundation/image.h"

namespace vkr {

struct AlignPyramidParams {
    int nTopLevel;          // levels 0 .. nTopLevel
    int nHistogramLevel;    // 0 .. nTopLevel
    bool bFilter, bDither;  // of the halving
};

// Grey pyramids and brightness distributions of a burst's exposures, from the pool, released with the object.
class AlignPyramids {
public:
    AlignPyramids() = default;
    ~AlignPyramids() { Release(); }
    AlignPyramids(const AlignPyramids&) = delete;
    AlignPyramids& operator=(const AlignPyramids&) = delete;

    // Level 0 is a copy of the luma plane; each further level is (w + 1) / 2 x (h + 1) / 2 of the one before. Exposures
    // are shared among the team. False when there was no memory.
    bool Build(const CYuvImage* vFrames, int nExposureNum, const AlignPyramidParams& params);

    // Makes exposure j as bright as exposure j + 1, in place, on every level: each grey value becomes the one whose
    // cumulated share there is nearest to its own here, the lowest of several.
    void MapHistogram(int j);

    void Release();

    int ExposureNum() const { return m_nExposureNum; }
    int LevelNum() const { return m_nLevels; }
    CImage* Levels(int i) { return m_vLevels[i]; }
    const CImage* Levels(int i) const { return m_vLevels[i]; }

private:
    static constexpr int kMaxLevels = 9;

    bool BuildOne(const CYuvImage& frame, int i, const AlignPyramidParams& params);

    CImage m_vLevels[kMaxExposures][kMaxLevels] = {};
    float m_fCDF[kMaxExposures][256] = {};  // share of the samples up to each grey value
    int m_nExposureNum = 0, m_nLevels = 0;
};

// vTable[a] = the b with the smallest |pFrom[a] - pTo[b]|, the lowest of several. Shares of 256 grey values.
void MatchShares(const float* pFrom, const float* pTo, uint8_t* vTable);

}  // namespace vkr
