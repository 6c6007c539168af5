#include "warp/warp_image.h"

#include <algorithm>
#include <cstdint>

#include "foundation/parallel_rows.h"
#include "warp/warp_position.h"

namespace vkr {

namespace {

struct WarpMatrix {
    float h[3][3];

    explicit WarpMatrix(const CMatrix& homography)
    {
        for (int i = 0; i < 9; ++i) h[i / 3][i % 3] = static_cast<float>(homography.At(i / 3, i % 3));
    }
    float Along(int nRow, float x, float y) const { return h[nRow][0] * x + h[nRow][1] * y + h[nRow][2]; }
};

float Between(float fFrom, float fTo, float fPart)
{
    return fFrom + fPart * (fTo - fFrom);
}

void WarpPixel(const CImage& src, WarpPosition column, WarpPosition row, uint8_t* pOut)
{
    const uint8_t* const pTop = src.Row(row.nWhole);
    const uint8_t* const pBottom = src.Row(row.nWhole + 1);
    const int nLeft = 3 * column.nWhole, nRight = 3 * std::min(column.nWhole + 1, src.nWidth - 1);
    for (int c = 0; c < 3; ++c) {
        const float fTop = Between(pTop[nLeft + c], pTop[nRight + c], column.fPart);
        const float fBottom = Between(pBottom[nLeft + c], pBottom[nRight + c], column.fPart);
        pOut[c] = static_cast<uint8_t>(Between(fTop, fBottom, row.fPart));
    }
}

void WarpRow(const CImage& src, const WarpMatrix& matrix, int y, CImage& dst)
{
    const float fY = static_cast<float>(y);
    uint8_t* pOut = dst.Row(y);
    for (int x = 0; x < dst.nWidth; ++x, pOut += 3) {
        const float fX = static_cast<float>(x), fDepth = matrix.Along(2, fX, fY);
        WarpPixel(src, PositionInside(matrix.Along(0, fX, fY) / fDepth, src.nWidth),
                  PositionInside(matrix.Along(1, fX, fY) / fDepth, src.nHeight), pOut);
    }
}

}  // namespace

bool WarpImage(const CImage& src, CImage& dst, const CMatrix& homography)
{
    if (src.Empty() || dst.Empty() || src.nDim != 3 || dst.nDim != 3) return false;
    if (homography.Rows() != 3 || homography.Cols() != 3) return false;
    const WarpMatrix matrix(homography);
    ParallelRows(dst.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) WarpRow(src, matrix, y, dst);
    });
    return true;
}

}  // namespace vkr
