#pragma once

#include <cstddef>
#include <cstdint>

#include "align/match_list.h"
#include "align/patch_ssd.h"
#include "foundation/heap_buffer.h"
#include "foundation/image.h"

namespace vkr {

// The part of a window that lies in a picture; both ends belong to it.
struct SearchWindow {
    int x0, y0, x1, y1;
    bool Empty() const { return x0 > x1 || y0 > y1; }
};

// The window of nRadiusX, nRadiusY (>= 0) around centre, clipped to a picture of that size.
SearchWindow ClipWindow(Place centre, int nRadiusX, int nRadiusY, int nWidth, int nHeight);

// A picture (nDim 1) as a search reads it: by rows of memory. The patch at (x, y) starts at column x - 4 of row y - 4,
// or of row 0 for the rows above. What a row has not is the end of the row before or the start of the next one, before
// the first and behind the last byte of the picture that byte; rows below the last are the last. Patches near the
// border thus differ from those of CopyPatch; the matches depend on it.
class PatchPlane {
public:
    // Copies the picture, which must not be empty. False when there was no memory.
    bool Build(const CImage& picture);

    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }

    // The candidates of a window that is not empty, with the likely one at likely. Rows 0 .. 4 share one patch row: the
    // grid has a row for the first of them alone, and grid row j > 0 is GridRowPlace(window, j) in the picture.
    PatchGrid Grid(const SearchWindow& window, Place likely) const;
    static int GridRowPlace(const SearchWindow& window, int nGridRow);

    // The patch at (x, y) within the picture.
    Patch Copy(int x, int y) const;

private:
    const uint8_t* TopLeft(int x, int nTop) const;

    HeapBuffer<uint8_t> m_Samples;  // rows with what lies left and right of them
    size_t m_nStride = 0;
    int m_nWidth = 0, m_nHeight = 0;
};

// Features by the cell of the match level that they fall on. Of several on one cell the last one is kept.
class FeatureMap {
public:
    struct Range {
        int nBegin, nEnd;
    };

    // nScale is 2^level, features outside fall on the nearest cell. At most kMaxFeatures. False without memory.
    bool Build(const PatchPlane& plane, const FeaturePoint* pFeatures, int nCount, int nScale);

    // Ranks, counted along the raster, of the kept features of columns x0 .. x1 of row y.
    Range Row(int y, int x0, int x1) const
    {
        const uint16_t* pCells = m_Cells.Data() + m_nStride * static_cast<size_t>(y);
        return {pCells[x0], pCells[x1 + 1]};
    }

    int FeatureAt(int nRank) const { return m_Features[static_cast<size_t>(nRank)]; }
    int RankOf(int nFeature) const { return m_RankOf[static_cast<size_t>(nFeature)]; }  // -1: not kept
    const Patch* PatchAt(int nRank) const { return m_Patches.Data() + nRank; }          // as the plane has it

private:
    void RankCells(const PatchPlane& plane);

    HeapBuffer<uint16_t> m_Cells;  // kept features before the cell; one more cell at the end of each row
    size_t m_nStride = 0;
    HeapBuffer<int32_t> m_Features, m_RankOf;
    HeapBuffer<Patch> m_Patches;
};

}  // namespace vkr
