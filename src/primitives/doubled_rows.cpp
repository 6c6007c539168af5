#include "primitives/doubled_rows.h"

#include <algorithm>

#include "primitives/blend_rows.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

bool DoubledRows::Open(const CImage& src, bool bFilter, bool bDither, int nTeam)
{
    m_Whole.Release();
    m_pSrc = &src;
    if (src.Empty()) return false;
    if (bFilter) return DoubleImage(src, m_Whole, true, bDither);
    m_nWideRow = WideRowSamples(src.nWidth, src.nDim);
    m_nWidePerThread = 2 * m_nWideRow + WidenScratch(src.nWidth, src.nDim);
    m_nOutPerThread = 2 * static_cast<size_t>(src.RowSamples());
    return m_WideRows.Allocate(m_nWidePerThread * nTeam) && m_OutRows.Allocate(m_nOutPerThread * nTeam);
}

void DoubledRows::Reader::Open(DoubledRows& rows, int nThread)
{
    m_pRows = &rows;
    m_nHeld[0] = m_nHeld[1] = -1;
    if (!rows.m_Whole.Empty()) return;
    m_pWide[0] = rows.m_WideRows.Data() + rows.m_nWidePerThread * nThread;
    m_pWide[1] = m_pWide[0] + rows.m_nWideRow;
    m_pScratch = m_pWide[1] + rows.m_nWideRow;
    m_pRow = rows.m_OutRows.Data() + rows.m_nOutPerThread * nThread;
}

// Rows y and y + 1 are what two output rows need, hence a slot by the parity of the row.
const uint16_t* DoubledRows::Reader::WideRow(int y)
{
    const int nSlot = y & 1;
    if (m_nHeld[nSlot] != y) {
        WidenRow31(m_pRows->m_pSrc->Row(y), m_pWide[nSlot], m_pRows->m_pSrc->nWidth, m_pRows->m_pSrc->nDim, m_pScratch);
        m_nHeld[nSlot] = y;
    }
    return m_pWide[nSlot];
}

const uint8_t* DoubledRows::Reader::Row(int y)
{
    if (!m_pRows->m_Whole.Empty()) return m_pRows->m_Whole.Row(y);
    const CImage& src = *m_pRows->m_pSrc;
    const int nSamples = 2 * src.RowSamples();
    if (src.nHeight == 1) {
        std::fill_n(m_pRow, nSamples, uint8_t{0});  // as DoubleImage: a single row has no pair to lie between
        return m_pRow;
    }
    const int nNear = y >> 1;
    const int nFar = std::clamp(nNear + ((y & 1) ? 1 : -1), 0, src.nHeight - 1);  // itself at both ends: the row / 4
    const uint16_t* pFirst = WideRow(std::min(nNear, nFar));
    const uint16_t* pSecond = WideRow(std::max(nNear, nFar));
    BlendRows31(nNear <= nFar ? pFirst : pSecond, nNear <= nFar ? pSecond : pFirst, m_pRow, nSamples);
    return m_pRow;
}

}  // namespace vkr
