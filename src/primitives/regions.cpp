#include "primitives/regions.h"

#include <algorithm>
#include <cstddef>

namespace vkr {

namespace {

// Labels of the first pass that turned out to be one region: trees in an array, every label pointing to a smaller one
// of its region or to itself. The smallest, the root, is that of the region's first pixel in the raster.
class Equivalences {
public:
    // A new label needs its left and its three upper neighbours to be background, so that of 2 x 2 pixels at most one
    // gets one.
    bool Allocate(int w, int h)
    {
        return m_pParent.Allocate((static_cast<size_t>(w) + 1) / 2 * ((static_cast<size_t>(h) + 1) / 2) + 1);
    }
    int32_t New()
    {
        ++m_nLabels;
        m_pParent[At(m_nLabels)] = m_nLabels;
        return m_nLabels;
    }
    void JoinEquivalence(int32_t nA, int32_t nB)
    {
        const int32_t nRootA = Root(nA), nRootB = Root(nB);
        m_pParent[At(std::max(nRootA, nRootB))] = std::min(nRootA, nRootB);
    }

    // Replaces the trees by the numbers of their regions, in the order of the roots; returns how many there are. A
    // label points to a smaller one, which has its number by then.
    int32_t NumberRegions()
    {
        int32_t nRegions = 0;
        m_pParent[0] = 0;
        for (int32_t i = 1; i <= m_nLabels; ++i) {
            m_pParent[At(i)] = m_pParent[At(i)] == i ? ++nRegions : m_pParent[At(m_pParent[At(i)])];
        }
        return nRegions;
    }
    const int32_t* Numbers() const { return m_pParent.Data(); }  // by label, 0 for the background

private:
    static size_t At(int32_t nLabel) { return static_cast<size_t>(nLabel); }
    // Halves the path on the way, which keeps the trees flat.
    int32_t Root(int32_t nLabel)
    {
        while (m_pParent[At(nLabel)] != nLabel) {
            m_pParent[At(nLabel)] = m_pParent[At(m_pParent[At(nLabel)])];
            nLabel = m_pParent[At(nLabel)];
        }
        return nLabel;
    }

    HeapBuffer<int32_t> m_pParent;
    int32_t m_nLabels = 0;
};

// The label of a foreground pixel from those before it in the raster. Neighbours that touch each other were joined when
// the later one got its label; up-right and the two on the left are the only ones that need not.
int32_t LabelFrom(int32_t nLeft, int32_t nUpLeft, int32_t nUp, int32_t nUpRight, Equivalences& equivalences)
{
    if (nUp != 0) return nUp;
    const int32_t nBefore = nLeft != 0 ? nLeft : nUpLeft;
    if (nUpRight == 0) return nBefore != 0 ? nBefore : equivalences.New();
    if (nBefore != 0) equivalences.JoinEquivalence(nBefore, nUpRight);
    return nUpRight;
}

// First pass: labels, with several to a region where parts of it meet further down. Returns the foreground pixels.
int32_t LabelRows(const CImage& src, int nThreshold, CLabelImage& labels, Equivalences& equivalences)
{
    const int w = src.nWidth;
    int32_t nArea = 0;
    for (int y = 0; y < src.nHeight; ++y) {
        const uint8_t* pSrc = src.Row(y);
        const int32_t* pAbove = y > 0 ? labels.Row(y - 1) : nullptr;
        int32_t* pRow = labels.Row(y);
        const auto Above = [&](int x) { return pAbove != nullptr && x >= 0 && x < w ? pAbove[x] : 0; };
        for (int x = 0; x < w; ++x) {
            pRow[x] = 0;
            if (pSrc[x] <= nThreshold) continue;
            pRow[x] = LabelFrom(x > 0 ? pRow[x - 1] : 0, Above(x - 1), Above(x), Above(x + 1), equivalences);
            ++nArea;
        }
    }
    return nArea;
}

// Replaces every label by vNumbers[label], which is never larger.
void Renumber(CLabelImage& labels, const int32_t* vNumbers)
{
    const size_t nCount = labels.Samples();
    for (size_t i = 0; i < nCount; ++i) labels.pData[i] = vNumbers[labels.pData[i]];
}

bool TouchesBackground(const CLabelImage& labels, int x, int y)
{
    const int nLeft = std::max(x - 1, 0), nRight = std::min(x + 1, labels.nWidth - 1);
    for (int yy = std::max(y - 1, 0); yy <= std::min(y + 1, labels.nHeight - 1); ++yy) {
        const int32_t* pRow = labels.Row(yy);
        if (pRow[nLeft] == 0 || pRow[x] == 0 || pRow[nRight] == 0) return true;
    }
    return false;
}

void CountPixels(const CLabelImage& labels, CLabelImage& edges, int32_t* vArea, int32_t* vEdgeLen)
{
    for (int y = 0; y < labels.nHeight; ++y) {
        const int32_t* pRow = labels.Row(y);
        int32_t* pEdge = edges.Row(y);
        for (int x = 0; x < labels.nWidth; ++x) {
            pEdge[x] = 0;
            if (pRow[x] == 0) continue;
            ++vArea[pRow[x] - 1];
            if (!TouchesBackground(labels, x, y)) continue;
            ++vEdgeLen[pRow[x] - 1];
            pEdge[x] = pRow[x];
        }
    }
}

}  // namespace

bool CRegionLabels::Label(const CImage& src, CLabelImage& labels, CLabelImage& edges, int nThreshold)
{
    Clear();
    if (!src.Empty() && src.nDim != 1) return false;
    if (!labels.Allocate(src.nWidth, src.nHeight) || !edges.Allocate(src.nWidth, src.nHeight)) return false;
    if (src.Empty()) return true;

    Equivalences equivalences;
    if (!equivalences.Allocate(src.nWidth, src.nHeight)) return false;
    const int32_t nForeground = LabelRows(src, nThreshold, labels, equivalences);
    const int32_t nRegions = equivalences.NumberRegions();
    if (!m_pArea.AllocateZero(static_cast<size_t>(nRegions)) ||
        !m_pEdgeLen.AllocateZero(static_cast<size_t>(nRegions))) {
        return false;
    }
    Renumber(labels, equivalences.Numbers());
    CountPixels(labels, edges, m_pArea.Data(), m_pEdgeLen.Data());
    nTotalRegionNum = nRegions + 1;
    nTotalArea = nForeground;
    return true;
}

int CRegionLabels::CountAbove(int nArea) const
{
    int nCount = 0;
    for (int i = 1; i < nTotalRegionNum; ++i) nCount += Area(i) > nArea ? 1 : 0;
    return nCount;
}

bool CRegionLabels::KeepAbove(int nArea, CLabelImage& labels, CLabelImage& edges)
{
    if (nTotalRegionNum < 2) return true;
    HeapBuffer<int32_t> numbers;
    if (!numbers.AllocateZero(static_cast<size_t>(nTotalRegionNum))) return false;
    int32_t nKept = 0;
    for (int i = 1; i < nTotalRegionNum; ++i) {
        if (Area(i) <= nArea) continue;
        const size_t nFrom = Index(i), nTo = static_cast<size_t>(nKept);
        m_pArea[nTo] = m_pArea[nFrom];
        m_pEdgeLen[nTo] = m_pEdgeLen[nFrom];
        numbers[static_cast<size_t>(i)] = ++nKept;
    }
    Renumber(labels, numbers.Data());
    Renumber(edges, numbers.Data());
    nTotalRegionNum = nKept + 1;
    return true;
}

void CRegionLabels::Clear()
{
    nTotalRegionNum = 0;
    nTotalArea = 0;
}

}  // namespace vkr
