#include "align/init_match.h"

#include <algorithm>
#include <cstdlib>

#include "align/feature_map.h"
#include "align/patch_ssd.h"
#include "foundation/fixed_point.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// One picture of the two with its features.
struct MatchSide {
    const CImage& picture;
    const FeaturePoint* pFeatures;
    int nCount;
    const PatchPlane& plane;
    FeatureMap map;

    // Truncating: features may lie past the border.
    Place At(int nFeature, int nScale) const
    {
        return {pFeatures[nFeature].x / nScale, pFeatures[nFeature].y / nScale};
    }
};

// Decides for single features. Keeps no state: any thread.
class PairSearch {
public:
    PairSearch(const MatchSide& first, const MatchSide& second, const InitMatchParams& params, int nScale, Place offset)
        : m_first(first), m_second(second), m_params(params), m_nScale(nScale), m_offset(offset)
    {
    }

    // The partner of feature i of the first picture, -1 for none.
    int Partner(int i) const
    {
        const Place a = m_first.At(i, m_nScale);
        const Place expectedB{a.x + m_offset.x, a.y + m_offset.y};
        const Patch patchA = CopyPatch(m_first.picture, a);
        int32_t nBest = kNoSSD;
        const int j = BestFeature(patchA, expectedB, nBest);
        if (j < 0) return -1;

        const Place b = m_second.At(j, m_nScale);
        const Place expectedA{b.x - m_offset.x, b.y - m_offset.y};
        const Patch patchB = CopyPatch(m_second.picture, b);
        if (HasBetterFeature(patchB, expectedA, i, nBest)) return -1;
        // The best of the first picture is the start of the second one's.
        if (!IsNear(a, BestPlace(m_first.plane, patchB, expectedA, a, nBest))) return -1;
        if (!IsNear(b, BestPlace(m_second.plane, patchA, expectedB, b, nBest))) return -1;
        return j;
    }

private:
    SearchWindow Window(const PatchPlane& plane, Place centre) const
    {
        return ClipWindow(centre, m_params.nMaxSearchX, m_params.nMaxSearchY, plane.Width(), plane.Height());
    }

    // The feature of the second picture that is most like the patch, the first in the raster of equal ones.
    int BestFeature(const Patch& patch, Place centre, int32_t& nBest) const
    {
        const SearchWindow window = Window(m_second.plane, centre);
        if (window.Empty()) return -1;
        int nFound = -1;
        for (int y = window.y0; y <= window.y1; ++y) {
            const FeatureMap::Range row = m_second.map.Row(y, window.x0, window.x1);
            if (row.nBegin == row.nEnd) continue;
            const int n = SearchPatches(patch, m_second.map.PatchAt(row.nBegin), row.nEnd - row.nBegin, nBest);
            if (n >= 0) nFound = m_second.map.FeatureAt(row.nBegin + n);
        }
        return nFound;
    }

    // Whether another feature of the first picture than nExcept is more like the patch than nBest. A feature that
    // shares its cell with a later one is no rival: the map does not have it.
    bool HasBetterFeature(const Patch& patch, Place centre, int nExcept, int32_t nBest) const
    {
        const SearchWindow window = Window(m_first.plane, centre);
        if (window.Empty()) return false;
        const FeatureMap& map = m_first.map;
        const int nSkip = map.RankOf(nExcept);
        const auto IsBetter = [&](int nBegin, int nEnd) {
            int32_t nLowest = nBest;
            return nBegin < nEnd && SearchPatches(patch, map.PatchAt(nBegin), nEnd - nBegin, nLowest) >= 0;
        };
        // From the middle down, then from the top: a rival, which ends the search, is mostly near the centre.
        const int nRows = window.y1 - window.y0 + 1;
        for (int n = 0; n < nRows; ++n) {
            const FeatureMap::Range row = map.Row(window.y0 + (n + nRows / 2) % nRows, window.x0, window.x1);
            const bool bSkip = nSkip >= row.nBegin && nSkip < row.nEnd;
            if (IsBetter(row.nBegin, bSkip ? nSkip : row.nEnd)) return true;
            if (bSkip && IsBetter(nSkip + 1, row.nEnd)) return true;
        }
        return false;
    }

    // The place of the window that is most like the patch and better than nBest, which it becomes; else start.
    Place BestPlace(const PatchPlane& plane, const Patch& patch, Place centre, Place start, int32_t& nBest) const
    {
        const SearchWindow window = Window(plane, centre);
        if (window.Empty()) return start;
        PatchBest best{nBest, 0, 0};
        if (!SearchGrid(patch, plane.Grid(window, centre), best)) return start;
        nBest = best.nSSD;
        return {int64_t{window.x0} + best.nColumn, PatchPlane::GridRowPlace(window, best.nRow)};
    }

    bool IsNear(Place a, Place b) const
    {
        return std::llabs(a.x - b.x) <= m_params.nInitMatchThreX && std::llabs(a.y - b.y) <= m_params.nInitMatchThreY;
    }

    const MatchSide& m_first;
    const MatchSide& m_second;
    const InitMatchParams& m_params;
    int m_nScale;
    Place m_offset;
};

void ForgetMatches(FeaturePoint* pFeatures, int nCount)
{
    for (int i = 0; i < nCount; ++i) pFeatures[i].nMatch = -1;
}

// Planes and maps of both sides; second.plane is the first's when both are the same picture.
bool PrepareSides(MatchSide& first, MatchSide& second, PatchPlane& firstPlane, PatchPlane& secondPlane, int nScale)
{
    if (!firstPlane.Build(first.picture)) return false;
    if (&second.plane == &secondPlane && !secondPlane.Build(second.picture)) return false;
    return first.map.Build(first.plane, first.pFeatures, first.nCount, nScale) &&
           second.map.Build(second.plane, second.pFeatures, second.nCount, nScale);
}

// In the order of the first list, on one thread: of several features with one partner the last becomes the partner's.
void CollectPairs(FeaturePoint* pFirst, int nFirst, FeaturePoint* pSecond, MatchList& matches)
{
    for (int i = 0; i < nFirst; ++i) {
        const int j = pFirst[i].nMatch;
        if (j < 0) continue;
        pSecond[j].nMatch = i;
        matches.pFirst[matches.nCount] = pFirst[i];
        matches.pSecond[matches.nCount] = pSecond[j];
        ++matches.nCount;
    }
}

}  // namespace

bool FindInitMatchPair(const FeaturedPicture& firstPicture, const FeaturedPicture& secondPicture,
                       const InitMatchParams& params, int nOffsetX, int nOffsetY, MatchList& matches)
{
    const CImage &first = firstPicture.picture, &second = secondPicture.picture;
    FeaturePoint *const pFirst = firstPicture.pFeatures, *const pSecond = secondPicture.pFeatures;
    const int nFirst = Clamp(firstPicture.nCount, 0, kMaxFeatures);
    const int nSecond = Clamp(secondPicture.nCount, 0, kMaxFeatures);
    matches.nCount = 0;
    ForgetMatches(pFirst, nFirst);
    ForgetMatches(pSecond, nSecond);
    if (first.Empty() || second.Empty() || first.nDim != 1 || second.nDim != 1) return false;

    const int nScale = 1 << Clamp(params.nFeatureMatchLevel, 0, 30);
    PatchPlane firstPlane, secondPlane;
    MatchSide firstSide{first, pFirst, nFirst, firstPlane, {}};
    MatchSide secondSide{second, pSecond, nSecond, first.pData == second.pData ? firstPlane : secondPlane, {}};
    if (!PrepareSides(firstSide, secondSide, firstPlane, secondPlane, nScale)) return false;

    const PairSearch search(firstSide, secondSide, params, nScale, {nOffsetX, nOffsetY});
    ParallelRows(nFirst, [&](RowBlock block) {
        for (int i = block.nBegin; i < block.nEnd; ++i) pFirst[i].nMatch = search.Partner(i);
    });
    CollectPairs(pFirst, nFirst, pSecond, matches);
    return matches.nCount >= params.nMinFeatureNum;
}

}  // namespace vkr
