#include "align/feature_map.h"

#include <algorithm>
#include <cstring>

#include "foundation/fixed_point.h"

namespace vkr {

namespace {

// The interval nCentre - nRadius .. nCentre + nRadius within 0 .. nSize - 1; nFirst > nLast when there is none.
void ClipInterval(int64_t nCentre, int nRadius, int nSize, int& nFirst, int& nLast)
{
    nFirst = static_cast<int>(std::min(std::max(nCentre - nRadius, int64_t{0}), int64_t{nSize}));
    nLast = static_cast<int>(std::max(std::min(nCentre + nRadius, int64_t{nSize} - 1), int64_t{-1}));
}

int TopRow(int64_t y)
{
    return static_cast<int>(std::max(y - kPatchRadius, int64_t{0}));
}

}  // namespace

SearchWindow ClipWindow(Place centre, int nRadiusX, int nRadiusY, int nWidth, int nHeight)
{
    SearchWindow window{};
    ClipInterval(centre.x, nRadiusX, nWidth, window.x0, window.x1);
    ClipInterval(centre.y, nRadiusY, nHeight, window.y0, window.y1);
    return window;
}

bool PatchPlane::Build(const CImage& picture)
{
    m_nWidth = picture.nWidth;
    m_nHeight = picture.nHeight;
    m_nStride = static_cast<size_t>(picture.nWidth) + 2 * kPatchRadius;
    const size_t nRows = static_cast<size_t>(picture.nHeight) + kPatchSide - 1;
    if (!m_Samples.Allocate(nRows * m_nStride + kPatchReadAhead)) return false;
    const auto Sample = [&](int64_t nAt) {
        return picture.pData[std::min(std::max(nAt, int64_t{0}), static_cast<int64_t>(picture.Samples()) - 1)];
    };
    for (size_t y = 0; y < nRows; ++y) {
        const int64_t nRow = int64_t{std::min(static_cast<int>(y), m_nHeight - 1)} * m_nWidth;
        uint8_t* pDst = m_Samples.Data() + y * m_nStride;
        for (int i = 0; i < kPatchRadius; ++i) {
            pDst[i] = Sample(nRow - kPatchRadius + i);
            pDst[kPatchRadius + m_nWidth + i] = Sample(nRow + m_nWidth + i);
        }
        std::memcpy(pDst + kPatchRadius, picture.pData + nRow, static_cast<size_t>(m_nWidth));
    }
    std::memset(m_Samples.Data() + nRows * m_nStride, 0, kPatchReadAhead);
    return true;
}

const uint8_t* PatchPlane::TopLeft(int x, int nTop) const
{
    return m_Samples.Data() + static_cast<size_t>(nTop) * m_nStride + x;
}

PatchGrid PatchPlane::Grid(const SearchWindow& window, Place likely) const
{
    const int nTop = TopRow(window.y0);
    PatchGrid grid{TopLeft(window.x0, nTop),     m_nStride, window.x1 - window.x0 + 1,
                   TopRow(window.y1) - nTop + 1, -1,        -1};
    if (likely.x >= window.x0 && likely.x <= window.x1 && likely.y >= window.y0 && likely.y <= window.y1) {
        grid.nLikelyColumn = static_cast<int>(likely.x) - window.x0;
        grid.nLikelyRow = TopRow(likely.y) - nTop;
    }
    return grid;
}

int PatchPlane::GridRowPlace(const SearchWindow& window, int nGridRow)
{
    return nGridRow == 0 ? window.y0 : TopRow(window.y0) + nGridRow + kPatchRadius;
}

Patch PatchPlane::Copy(int x, int y) const
{
    Patch patch{};
    const uint8_t* pSrc = TopLeft(x, TopRow(y));
    for (size_t j = 0; j < kPatchSide; ++j) {
        std::memcpy(patch.vSamples + j * kPatchStride, pSrc + j * m_nStride, kPatchSide);
    }
    return patch;
}

bool FeatureMap::Build(const PatchPlane& plane, const FeaturePoint* pFeatures, int nCount, int nScale)
{
    m_nStride = static_cast<size_t>(plane.Width()) + 1;
    const size_t nFeatures = static_cast<size_t>(nCount);
    if (!m_Cells.AllocateZero(m_nStride * static_cast<size_t>(plane.Height())) || !m_Features.Allocate(nFeatures) ||
        !m_RankOf.Allocate(nFeatures) || !m_Patches.Allocate(nFeatures)) {
        return false;
    }
    std::fill_n(m_RankOf.Data(), nFeatures, -1);
    for (int k = 0; k < nCount; ++k) {
        const size_t x = static_cast<size_t>(Clamp(pFeatures[k].x / nScale, 0, plane.Width() - 1));
        const size_t y = static_cast<size_t>(Clamp(pFeatures[k].y / nScale, 0, plane.Height() - 1));
        m_Cells[y * m_nStride + x] = static_cast<uint16_t>(k + 1);  // a later feature takes the cell
    }
    RankCells(plane);
    return true;
}

// Turns the map of indices, 0 for none, into the map of ranks.
void FeatureMap::RankCells(const PatchPlane& plane)
{
    uint16_t nRank = 0;
    for (int y = 0; y < plane.Height(); ++y) {
        uint16_t* pCells = m_Cells.Data() + m_nStride * static_cast<size_t>(y);
        for (int x = 0; x <= plane.Width(); ++x) {
            const int nFeature = pCells[x] - 1;
            pCells[x] = nRank;
            if (nFeature < 0) continue;
            m_Features[nRank] = nFeature;
            m_RankOf[static_cast<size_t>(nFeature)] = nRank;
            m_Patches[nRank] = plane.Copy(x, y);
            ++nRank;
        }
    }
}

}  // namespace vkr
