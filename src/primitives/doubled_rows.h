#pragma once

#include <cstdint>

#include "foundation/heap_buffer.h"
#include "foundation/image.h"

namespace vkr {

// The rows of a picture doubled by DoubleImage, for readers that take them one after the other. The plain doubling is
// made row by row where it is read, so that the doubled picture never stands in memory; the filtered one is serial (and
// may carry), so it is made whole by Open. Same bytes as DoubleImage, in both.
class DoubledRows {
public:
    DoubledRows() = default;
    ~DoubledRows() { m_Whole.Release(); }
    DoubledRows(const DoubledRows&) = delete;
    DoubledRows& operator=(const DoubledRows&) = delete;

    // Prepares the rows of src, which must live on, for up to nTeam threads (MaxTeam()). Again for another picture as
    // often as wanted. False when there is no memory or src is empty.
    bool Open(const CImage& src, bool bFilter, bool bDither, int nTeam);

    int Width() const { return 2 * m_pSrc->nWidth; }
    int Height() const { return 2 * m_pSrc->nHeight; }

    // The rows as one thread of the team reads them; nThread 0 .. nTeam - 1. Lives shorter than the DoubledRows.
    class Reader {
    public:
        Reader() = default;
        void Open(DoubledRows& rows, int nThread);

        // Row y, 0 .. Height() - 1, tight; valid until the next call. Cheapest from top to bottom.
        const uint8_t* Row(int y);

    private:
        const uint16_t* WideRow(int y);

        const DoubledRows* m_pRows = nullptr;
        uint16_t* m_pWide[2] = {};  // widened source rows, row y in slot y & 1
        int m_nHeld[2] = {-1, -1};  // which row stands in each
        uint16_t* m_pScratch = nullptr;
        uint8_t* m_pRow = nullptr;
    };

private:
    const CImage* m_pSrc = nullptr;
    CImage m_Whole{};                 // filtered form
    HeapBuffer<uint16_t> m_WideRows;  // plain form: two widened rows and scratch per thread
    HeapBuffer<uint8_t> m_OutRows;    // plain form: one row per thread
    size_t m_nWideRow = 0, m_nWidePerThread = 0, m_nOutPerThread = 0;
};

}  // namespace vkr
