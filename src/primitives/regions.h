#pragma once

#include <cassert>
#include <cstdint>

#include "foundation/heap_buffer.h"
#include "foundation/image.h"
#include "primitives/label_image.h"

namespace vkr {

// The connected regions of a grey picture, with their areas and edge lengths in pixels. Pixels that touch at a corner
// are connected. Regions are numbered from 1 in raster order of their first pixels.
//
// Any number of regions up to what the picture holds (one in four pixels): labels and counts have 32 bits, the time is
// near linear in the pixels, and the memory besides the two images at most 3 bytes a pixel. One thread; an object must
// not be used by two at once, different objects may.
class CRegionLabels {
public:
    // Foreground is what lies above nThreshold (any value) in src, nDim 1. labels and edges take its size: the region
    // of each pixel, and the same at the edges of regions, 0 elsewhere. A pixel is on the edge if one of its eight
    // neighbours is background; the border of the picture by itself makes no edge. False when there is no memory or src
    // has another nDim: the counts are 0 then, the images undefined. An empty src is no failure; the counts are 0 too.
    bool Label(const CImage& src, CLabelImage& labels, CLabelImage& edges, int nThreshold);

    // The number of regions of more than nArea pixels.
    int CountAbove(int nArea) const;

    // Makes background of all other regions and numbers those that stay anew, in the same order. labels and edges are
    // those of the last Label. nTotalArea stays, small regions included. False, nothing changed, when there is no
    // memory.
    bool KeepAbove(int nArea, CLabelImage& labels, CLabelImage& edges);

    // Labels 1 .. nTotalRegionNum - 1.
    int Area(int nLabel) const { return m_pArea[Index(nLabel)]; }
    int EdgeLen(int nLabel) const { return m_pEdgeLen[Index(nLabel)]; }

    int32_t nTotalRegionNum = 0;  // labels in use, the background counted; 0 without a picture
    int32_t nTotalArea = 0;       // foreground pixels

private:
    size_t Index(int nLabel) const
    {
        assert(nLabel > 0 && nLabel < nTotalRegionNum);
        return static_cast<size_t>(nLabel - 1);
    }
    void Clear();

    HeapBuffer<int32_t> m_pArea, m_pEdgeLen;  // by label - 1
};

}  // namespace vkr
