#include "align/ransac.h"

#include <cmath>

#include "foundation/log.h"

namespace vkr {
namespace {

constexpr int kSampleSize = 4;

// The pairs in centred coordinates, room for a subset of them, and the solver's memory: taken once a run.
struct CentredPairs {
    HeapBuffer<PointF> first, second, subsetFirst, subsetSecond;
    HomographyWorkspace workspace;
    int nCount = 0;

    bool Take(int n)
    {
        nCount = n;
        const size_t nSize = static_cast<size_t>(n);
        return first.Allocate(nSize) && second.Allocate(nSize) && subsetFirst.Allocate(nSize) &&
               subsetSecond.Allocate(nSize) && workspace.Reserve(n);
    }
    void CopyToSubset(int nSubset, int i)
    {
        subsetFirst[nSubset] = first[i];
        subsetSecond[nSubset] = second[i];
    }
    bool SolveSubset(int nSubset, CMatrix& homography)
    {
        return SolveHomography(subsetFirst.Data(), subsetSecond.Data(), nSubset, homography, workspace);
    }
};

PointF Centre(const FeaturePoint& point, int nWidth, int nHeight)
{
    return {static_cast<float>(point.x - nWidth * 0.5), static_cast<float>(point.y - nHeight * 0.5)};
}

void CentrePairs(const MatchList& matches, const RansacParams& params, CentredPairs& pairs)
{
    for (int i = 0; i < matches.nCount; ++i) {
        pairs.first[i] = Centre(matches.pFirst[i], params.nWidth[0], params.nHeight[0]);
        pairs.second[i] = Centre(matches.pSecond[i], params.nWidth[1], params.nHeight[1]);
    }
}

// Four ascending distinct indices below n >= 4, not evenly spread: each draw leaves room for those that follow.
void DrawSample(int n, AlignRandom& random, int* pIndices)
{
    pIndices[0] = random.Next() % (n - 3);
    for (int i = 1; i < kSampleSize; ++i) {
        const int nPrevious = pIndices[i - 1];
        pIndices[i] = random.Next() % (n - 4 + i - nPrevious) + nPrevious + 1;
    }
}

// Whether the homography takes second to within fLimit of first, in both axes. Products and quotients are double, the
// denominator and the results float. What is not finite compares false.
bool Agrees(const CMatrix& h, PointF first, PointF second, float fLimit)
{
    const double x = second.x, y = second.y;
    const float fDenominator = static_cast<float>(h.At(2, 0) * x + h.At(2, 1) * y + h.At(2, 2));
    const float fX = static_cast<float>((h.At(0, 0) * x + h.At(0, 1) * y + h.At(0, 2)) / fDenominator);
    const float fY = static_cast<float>((h.At(1, 0) * x + h.At(1, 1) * y + h.At(1, 2)) / fDenominator);
    return std::fabs(fX - first.x) <= fLimit && std::fabs(fY - first.y) <= fLimit;
}

int CopyInliersToSubset(CentredPairs& pairs, const CMatrix& homography, int nLimit)
{
    int nSubset = 0;
    for (int i = 0; i < pairs.nCount; ++i) {
        if (Agrees(homography, pairs.first[i], pairs.second[i], static_cast<float>(nLimit))) {
            pairs.CopyToSubset(nSubset++, i);
        }
    }
    return nSubset;
}

int CountInliers(const CentredPairs& pairs, const CMatrix& homography, int nLimit)
{
    int nInliers = 0;
    for (int i = 0; i < pairs.nCount; ++i) {
        nInliers += Agrees(homography, pairs.first[i], pairs.second[i], static_cast<float>(nLimit)) ? 1 : 0;
    }
    return nInliers;
}

// Fits a random sample, then all pairs that agree with it. Returns how many agree with the second fit; 0 when the
// sample finds no more than itself.
int TrySample(CentredPairs& pairs, const RansacParams& params, AlignRandom& random, CMatrix& homography)
{
    int vIndices[kSampleSize];
    DrawSample(pairs.nCount, random, vIndices);
    for (int i = 0; i < kSampleSize; ++i) pairs.CopyToSubset(i, vIndices[i]);
    if (!pairs.SolveSubset(kSampleSize, homography)) return 0;
    const int nInliers = CopyInliersToSubset(pairs, homography, params.nThre[0]);
    if (nInliers <= kSampleSize || !pairs.SolveSubset(nInliers, homography)) return 0;
    return CountInliers(pairs, homography, params.nThre[1]);
}

void PrintBetter(int nIteration, int nInliers, int nPreExitThre, const CMatrix& h)
{
    HdrPrintf("RANSCA%d: BestMatchNum=%d, nPreExitThre=%d", nIteration, nInliers, nPreExitThre);
    for (int y = 0; y < 3; ++y) HdrPrintf("%12.8f%12.8f%12.8f\n", h.At(y, 0), h.At(y, 1), h.At(y, 2));
}

}  // namespace

int Ransac(const MatchList& matches, const RansacParams& params, AlignRandom& random, CMatrix& homography)
{
    CentredPairs pairs;
    if (matches.nCount < kSampleSize || !pairs.Take(matches.nCount)) return 0;
    CentrePairs(matches, params, pairs);
    const int nPreExitThre = static_cast<int>(static_cast<int64_t>(params.nPsThre[1]) * matches.nCount / 100);
    CMatrix candidate;
    int nBest = 0, nIteration = 0;
    for (; nIteration < params.nMaxIt; ++nIteration) {
        const int nInliers = TrySample(pairs, params, random, candidate);
        if (nInliers <= nBest) continue;
        homography.Swap(candidate);
        PrintBetter(nIteration, nInliers, nPreExitThre, homography);
        nBest = nInliers;
        if (nBest > nPreExitThre) break;
    }
    HdrPrintf("RANSAC Iteration=%d\n", nIteration);
    return nBest;
}

}  // namespace vkr
