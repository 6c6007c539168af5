#include "primitives/morphology.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "foundation/heap_buffer.h"
#include "primitives/morphology_rows.h"
#include "primitives/share_rows.h"

namespace vkr {

namespace {

using Morphology = CMorphologyFilter;

enum class Window { kSquare, kCross };
enum class Team { kThisThread, kShared };

bool IsGray(const CImage& image)
{
    return image.Empty() || image.nDim == 1;
}

bool SameSize(const CImage& a, const CImage& b)
{
    return a.nWidth == b.nWidth && a.nHeight == b.nHeight;
}

// A picture that is a source already has its size.
bool AllocateLike(const CImage& src, CImage& dst)
{
    return &src == &dst || dst.AllocateGray(src.nWidth, src.nHeight);
}

bool Threshold(const CImage& src, CImage& dst, int nLow, int nHigh)
{
    if (!IsGray(src) || !AllocateLike(src, dst)) return false;
    if (src.Empty()) return true;
    const int nFrom = std::max(nLow, 0), nTo = std::min(nHigh, 255);
    if (nFrom > nTo) {
        std::fill_n(dst.pData, dst.Samples(), uint8_t{0});
    } else {
        InRangeRow(src.pData, dst.pData, src.Samples(), static_cast<uint8_t>(nFrom), static_cast<uint8_t>(nTo));
    }
    return true;
}

bool CombineBits(const CImage& a, const CImage& b, CImage& dst, BitOp op)
{
    if (!SameSize(a, b) || !IsGray(a) || !IsGray(b)) return false;
    if (&b != &dst && !AllocateLike(a, dst)) return false;
    if (!a.Empty() && !b.Empty()) BitRow(op, a.pData, b.pData, dst.pData, a.Samples());
    return true;
}

// Rows that were overwritten, and what a square needs.
class RowMemory {
public:
    bool Allocate(int w)
    {
        m_nWidth = static_cast<size_t>(w);
        return m_rows.Allocate(3 * m_nWidth + 2);
    }
    uint8_t* Kept(int y) { return m_rows.Data() + m_nWidth * (y & 1); }  // in place: the last two rows
    uint8_t* Scratch() { return m_rows.Data() + 2 * m_nWidth; }          // w + 2 samples

private:
    HeapBuffer<uint8_t> m_rows;
    size_t m_nWidth = 0;
};

void CombineRow(Window window, WindowOp op, const WindowRows& rows, uint8_t* pDst, int w, RowMemory& memory)
{
    if (window == Window::kSquare) return SquareRow(op, rows, pDst, w, memory.Scratch());
    CrossRow(op, rows, pDst, w);
}

// Row y is written when row y + 1 is still as it was; rows y and y - 1 are read from copies.
void CombineInPlace(CImage& image, Window window, WindowOp op, RowMemory& memory)
{
    const int w = image.nWidth, nLast = image.nHeight - 1;
    for (int y = 0; y <= nLast; ++y) {
        std::copy_n(image.Row(y), w, memory.Kept(y));
        const WindowRows rows = {memory.Kept(std::max(y - 1, 0)), memory.Kept(y),
                                 y < nLast ? image.Row(y + 1) : memory.Kept(y)};
        CombineRow(window, op, rows, image.Row(y), w, memory);
    }
}

void CombineBlock(const CImage& src, CImage& dst, Window window, WindowOp op, RowBlock block, RowMemory& memory)
{
    for (int y = block.nBegin; y < block.nEnd; ++y) {
        const WindowRows rows = {src.Row(y - 1), src.Row(y), src.Row(y + 1)};  // clamped
        CombineRow(window, op, rows, dst.Row(y), src.nWidth, memory);
    }
}

// The one scratch row of a square is this thread's: only crosses are shared.
bool Combine(const CImage& src, CImage& dst, Window window, WindowOp op, Team team = Team::kThisThread)
{
    if (!IsGray(src) || !AllocateLike(src, dst)) return false;
    if (src.Empty()) return true;
    RowMemory memory;
    if (!memory.Allocate(src.nWidth)) return false;
    if (&src == &dst) {
        CombineInPlace(dst, window, op, memory);
    } else if (team == Team::kShared && window == Window::kCross) {
        ShareRows(src.nHeight, src.nWidth, [&](RowBlock block) { CombineBlock(src, dst, window, op, block, memory); });
    } else {
        CombineBlock(src, dst, window, op, RowBlock{0, src.nHeight, 0}, memory);
    }
    return true;
}

// nSquares squares, the first of them from src to dst, and nCrosses crosses.
using Step = bool (*)(const CImage& src, CImage& dst);
bool Octagon(const CImage& src, CImage& dst, Step square, int nSquares, Step cross, int nCrosses)
{
    if (!square(src, dst)) return false;
    for (int i = 1; i < nSquares; ++i) {
        if (!square(dst, dst)) return false;
    }
    for (int i = 0; i < nCrosses; ++i) {
        if (!cross(dst, dst)) return false;
    }
    return true;
}

}  // namespace

bool CMorphologyFilter::ThresholdAbove(const CImage& src, CImage& dst, int t)
{
    return Threshold(src, dst, t, 255);
}

bool CMorphologyFilter::ThresholdBelow(const CImage& src, CImage& dst, int t)
{
    return Threshold(src, dst, 0, t);
}

bool CMorphologyFilter::ThresholdRange(const CImage& src, CImage& dst, int nLow, int nHigh)
{
    return Threshold(src, dst, nLow, nHigh);
}

bool CMorphologyFilter::BitNot(const CImage& src, CImage& dst)
{
    if (!IsGray(src) || !AllocateLike(src, dst)) return false;
    if (!src.Empty()) NotRow(src.pData, dst.pData, src.Samples());
    return true;
}

bool CMorphologyFilter::BitAnd(const CImage& a, const CImage& b, CImage& dst)
{
    return CombineBits(a, b, dst, BitOp::kAnd);
}

bool CMorphologyFilter::BitOr(const CImage& a, const CImage& b, CImage& dst)
{
    return CombineBits(a, b, dst, BitOp::kOr);
}

bool CMorphologyFilter::BitXor(const CImage& a, const CImage& b, CImage& dst)
{
    return CombineBits(a, b, dst, BitOp::kXor);
}

bool CMorphologyFilter::ErodeBinarySquare(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kSquare, WindowOp::kAnd);
}

bool CMorphologyFilter::DilateBinarySquare(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kSquare, WindowOp::kOr);
}

bool CMorphologyFilter::ErodeGraySquare(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kSquare, WindowOp::kMin);
}

bool CMorphologyFilter::DilateGraySquare(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kSquare, WindowOp::kMax);
}

bool CMorphologyFilter::ErodeBinaryCross(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kCross, WindowOp::kAnd);
}

bool CMorphologyFilter::DilateBinaryCross(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kCross, WindowOp::kOr);
}

bool CMorphologyFilter::ErodeGrayCross(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kCross, WindowOp::kMin);
}

bool CMorphologyFilter::DilateGrayCross(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kCross, WindowOp::kMax);
}

bool CMorphologyFilter::ErodeGrayCrossFast(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kCross, WindowOp::kMin, Team::kShared);
}

bool CMorphologyFilter::DilateGrayCrossFast(const CImage& src, CImage& dst)
{
    return Combine(src, dst, Window::kCross, WindowOp::kMax, Team::kShared);
}

bool CMorphologyFilter::ErodeBinaryOctagon2(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, ErodeBinarySquare, 1, ErodeBinaryCross, 1);
}

bool CMorphologyFilter::ErodeBinaryOctagon3(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, ErodeBinarySquare, 1, ErodeBinaryCross, 2);
}

bool CMorphologyFilter::ErodeBinaryOctagon4(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, ErodeBinarySquareFast, 2, ErodeBinaryCrossFast, 2);
}

// An oddity that must stay: unlike its sisters it never reads src and erodes what dst held before.
bool CMorphologyFilter::ErodeGrayOctagon2(const CImage& /*src*/, CImage& dst)
{
    return Octagon(dst, dst, ErodeGraySquareFast, 1, ErodeGrayCrossFast, 1);
}

bool CMorphologyFilter::ErodeGrayOctagon3(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, ErodeGraySquare, 1, ErodeGrayCross, 2);
}

bool CMorphologyFilter::ErodeGrayOctagon4(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, ErodeGraySquare, 2, ErodeGrayCross, 2);
}

bool CMorphologyFilter::DilateBinaryOctagon2(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, DilateBinarySquare, 1, DilateBinaryCross, 1);
}

bool CMorphologyFilter::DilateBinaryOctagon3(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, DilateBinarySquare, 1, DilateBinaryCross, 2);
}

bool CMorphologyFilter::DilateBinaryOctagon4(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, DilateBinarySquare, 2, DilateBinaryCross, 2);
}

bool CMorphologyFilter::DilateGrayOctagon2(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, DilateGraySquareFast, 1, DilateGrayCrossFast, 1);
}

bool CMorphologyFilter::DilateGrayOctagon3(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, DilateGraySquare, 1, DilateGrayCross, 2);
}

bool CMorphologyFilter::DilateGrayOctagon4(const CImage& src, CImage& dst)
{
    return Octagon(src, dst, DilateGraySquare, 2, DilateGrayCross, 2);
}

}  // namespace vkr
