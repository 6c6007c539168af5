#pragma once

#include <cstddef>
#include <cstdint>

#include "algebra/matrix.h"

namespace vkr {

// Where a homography takes the corners of a picture's cells: (nWidth / nCellSize + 1) x (nHeight / nCellSize + 1) nodes
// of two floats, u then v, rows tight. A plain record like the pictures: zero-filled is empty, the buffer comes from
// the pool, is reused while it suffices, and whoever holds the record calls Release.
struct HomographGrid {
    int32_t nCols, nRows;
    float* pNodes;
    size_t nCapacity;  // floats held by pNodes

    bool Allocate(int nNodeCols, int nNodeRows);
    void Release();
    float* Row(int j) { return pNodes + static_cast<size_t>(j) * nCols * 2; }
    const float* Row(int j) const { return pNodes + static_cast<size_t>(j) * nCols * 2; }
};

// Node (i, j) = the projection of (nCellSize * i, nCellSize * j), all in float: numerators and denominator of a row
// start with a product and then grow by one addition per node, so that their error grows along the row. A denominator
// of 0 gives a node that is not finite. False, with the grid untouched, when a size is no positive multiple of the cell
// size (with a line) or the matrix is not 3 x 3, and with the grid empty when there was no memory. Same bytes from any
// number of threads.
bool BuildGrid(HomographGrid& grid, int nWidth, int nHeight, const CMatrix& homography, int nCellSize);

}  // namespace vkr
