#pragma once

#include <cstddef>

#include "foundation/parallel_rows.h"

namespace vkr {

// Rows shared among the team as ParallelRows does, or all on this thread where the picture is so small that waking the
// team costs more than the rows. Only for work whose bytes do not depend on the blocks. nRowSamples is the work of one
// row; scratch is sized by MaxTeam() as for ParallelRows.
template <class Fn>
void ShareRows(int nRows, int nRowSamples, const Fn& fn)
{
    constexpr size_t kWorthATeam = 16384;  // samples: some microseconds of work
    if (nRows <= 0) return;
    if (static_cast<size_t>(nRows) * static_cast<size_t>(nRowSamples) < kWorthATeam) {
        fn(RowBlock{0, nRows, 0});
    } else {
        ParallelRows(nRows, fn);
    }
}

}  // namespace vkr
