#pragma once

#include <omp.h>

namespace vkr {

// Rows [nBegin, nEnd) of block nIndex of the team.
struct RowBlock {
    int nBegin, nEnd, nIndex;
};

// The largest team that ParallelRows or ParallelItems called from here can have: size scratch by it, taken before the
// call. Inside another region it is 1.
inline int MaxTeam()
{
    return omp_in_parallel() ? 1 : omp_get_max_threads();
}

// Block nIndex of nTeam contiguous blocks of nRows rows, the first (nRows mod nTeam) one row longer.
inline RowBlock SplitRows(int nRows, int nTeam, int nIndex)
{
    const int nShare = nRows / nTeam;
    const int nLonger = nRows % nTeam;
    const int nBegin = nIndex * nShare + (nIndex < nLonger ? nIndex : nLonger);
    return {nBegin, nBegin + nShare + (nIndex < nLonger ? 1 : 0), nIndex};
}

// Calls fn(RowBlock) once per thread of the team, on contiguous blocks that are not empty, and returns when all are
// done. Inside another region the team is one thread. fn must not throw or allocate.
template <class Fn>
void ParallelRows(int nRows, const Fn& fn)
{
    if (nRows <= 0) return;
    const int nMaxTeam = MaxTeam();
    if (nMaxTeam == 1) {
        fn(RowBlock{0, nRows, 0});
        return;
    }
#pragma omp parallel num_threads(nMaxTeam) default(none) shared(fn, nRows)
    {
        const RowBlock block = SplitRows(nRows, omp_get_num_threads(), omp_get_thread_num());
        if (block.nBegin < block.nEnd) fn(block);
    }
}

// Calls fn(i) for every i of 0 .. nItems - 1, shared among the team in any order: exposures and pairs. The whole team
// is opened even for one item, so that row loops inside fn always run as one block. fn must not throw.
template <class Fn>
void ParallelItems(int nItems, const Fn& fn)
{
    if (nItems <= 0) return;
    const int nMaxTeam = MaxTeam();
#pragma omp parallel for schedule(dynamic, 1) num_threads(nMaxTeam) default(none) shared(fn, nItems)
    for (int i = 0; i < nItems; ++i) fn(i);
}

}  // namespace vkr
