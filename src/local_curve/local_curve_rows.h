#pragma once

#include <cstdint>

#include "local_curve/local_curve_grid.h"

namespace vkr {

// The four curves around a block, interleaved: entry v holds, for the nodes up-left, up-right, down-left and down-right
// in the 16-bit lanes from low addresses to high, the output for the input v in 1/16, 0 .. 4096. One addition then
// moves all four lookups on: entry plus carry stays below 65536 in every lane.
struct BlockTable {
    uint64_t vEntry[256];
};

// pCurve of four nodes, each kCurvePoints values 0 .. 256.
void MakeBlockTable(const int32_t* const pCurve[4], BlockTable& table);

// How the rows of a picture are mapped.
struct CurveMapping {
    BlockGeometry geometry;
    const BlockTable* pTables;  // by row and column of blocks
    int32_t nTableCols;         // blocks across
    int32_t nWYUV;              // 0 .. 16
    int32_t nSaturateBoost;     // -256 .. 256
};

// Maps row y of a picture of geometry.m_nWidth pixels B, G, R in place. Every lookup and the mix of the four nodes
// carry their dropped fraction along the row, all from 0 at its start: rows are independent of each other.
//
// Both give the same bytes: MapCurveRowScalar is the definition, MapCurveRow is what to call.
void MapCurveRow(uint8_t* pRow, int32_t y, const CurveMapping& mapping);
void MapCurveRowScalar(uint8_t* pRow, int32_t y, const CurveMapping& mapping);

}  // namespace vkr
