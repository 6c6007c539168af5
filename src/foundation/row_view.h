#pragma once

#include <cassert>
#include <cstddef>

namespace vkr {

// Rows of samples that somebody else owns: a pointer, the samples from row to row, the number of rows.
template <class T>
struct RowView {
    T* pData;
    size_t nStride;  // samples, not bytes
    int nRows;

    T* Row(int y) const
    {
        assert(y >= 0 && y < nRows);
        return pData + nStride * static_cast<size_t>(y);
    }
};

}  // namespace vkr
