#include "align/refine_match.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "align/patch_ssd.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

constexpr int kReach = 2;                            // pixels that a track may move at each level
constexpr int kBlockRadius = kPatchRadius + kReach;  // of the samples that its 25 candidates cover
constexpr int kBlockStride = 32;

// The samples around a place, where they lie in the picture or, near its border, clamped in a copy.
class TrackBlock {
public:
    TrackBlock(const CImage& picture, Place place)
    {
        const bool bInside = place.x >= kBlockRadius && place.x + kBlockRadius < picture.nWidth &&
                             place.y >= kBlockRadius && place.y + kBlockRadius < picture.nHeight;
        if (bInside && !picture.Empty()) {
            m_pFirst = picture.Row(static_cast<int>(place.y) - kBlockRadius) + (place.x - kBlockRadius);
            m_nStride = static_cast<size_t>(picture.nWidth);
        } else {
            std::memset(m_vCopy, 0, sizeof(m_vCopy));
            CopyBlock(picture, place, kBlockRadius, m_vCopy, kBlockStride);
        }
    }
    TrackBlock(const TrackBlock&) = delete;
    TrackBlock& operator=(const TrackBlock&) = delete;

    PatchGrid Grid() const
    {
        constexpr int kMoves = 2 * kReach + 1;
        return {m_pFirst, m_nStride, kMoves, kMoves, kReach, kReach};
    }

private:
    uint8_t m_vCopy[(2 * kBlockRadius + 1) * kBlockStride + kPatchReadAhead];
    const uint8_t* m_pFirst = m_vCopy;
    size_t m_nStride = kBlockStride;
};

Place Scaled(const FeaturePoint& point, int nLevel)
{
    return {point.x / (1 << nLevel), point.y / (1 << nLevel)};  // truncating
}

// Where the point from of pictures pFrom is found in pTo, when the search starts at point start of pTo.
Place Track(const CImage* pFrom, const FeaturePoint& from, const CImage* pTo, const FeaturePoint& start, int nTopLevel)
{
    if (nTopLevel < 0) return {start.x, start.y};
    Place at = Scaled(start, nTopLevel);
    for (int l = nTopLevel; l >= 0; --l) {
        const Patch patch = CopyPatch(pFrom[l], Scaled(from, l));
        const TrackBlock block(pTo[l], at);
        PatchBest best{kNoSSD, kReach, kReach};
        SearchGrid(patch, block.Grid(), best);
        at = {at.x + best.nColumn - kReach, at.y + best.nRow - kReach};
        if (l > 0) at = {2 * at.x, 2 * at.y};
    }
    return at;
}

bool IsNear(Place end, const FeaturePoint& point, const RefineMatchParams& params)
{
    return std::llabs(end.x - point.x) <= params.nRefineMatchThreX &&
           std::llabs(end.y - point.y) <= params.nRefineMatchThreY;
}

// Moves the weaker point to where the stronger one is found; false, with nothing moved, when one track ends too far.
bool RefinePair(const CImage* pStrongLevels, const FeaturePoint& strong, const CImage* pWeakLevels, FeaturePoint& weak,
                int nTopLevel, const RefineMatchParams& params)
{
    const Place found = Track(pStrongLevels, strong, pWeakLevels, weak, nTopLevel);
    if (!IsNear(found, weak, params)) return false;
    // Back from the weaker point as it was, not from where it was found.
    if (!IsNear(Track(pWeakLevels, weak, pStrongLevels, strong, nTopLevel), strong, params)) return false;
    weak.x = static_cast<int32_t>(found.x);
    weak.y = static_cast<int32_t>(found.y);
    return true;
}

void KeepFlagged(MatchList& matches)
{
    int nKept = 0;
    for (int i = 0; i < matches.nCount; ++i) {
        if (matches.pFirst[i].nMatch != 0) continue;
        matches.pFirst[nKept] = matches.pFirst[i];
        matches.pSecond[nKept] = matches.pSecond[i];
        ++nKept;
    }
    matches.nCount = nKept;
}

}  // namespace

bool RefineMatchPair(const CImage* pFirstLevels, const CImage* pSecondLevels, int nLevels,
                     const RefineMatchParams& params, MatchList& matches)
{
    const int nTopLevel = std::min({params.nMatchLevel, nLevels, 31}) - 1;
    ParallelRows(matches.nCount, [&](RowBlock block) {
        for (int i = block.nBegin; i < block.nEnd; ++i) {
            FeaturePoint& a = matches.pFirst[i];
            FeaturePoint& b = matches.pSecond[i];
            const bool bKeep = a.fResponse > b.fResponse
                                   ? RefinePair(pFirstLevels, a, pSecondLevels, b, nTopLevel, params)
                                   : RefinePair(pSecondLevels, b, pFirstLevels, a, nTopLevel, params);
            a.nMatch = bKeep ? 0 : -1;
        }
    });
    KeepFlagged(matches);
    return matches.nCount >= params.nMinFeatureNum;
}

}  // namespace vkr
