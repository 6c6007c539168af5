#include "align/valid_mask.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

struct Corner {
    float x, y;
};

// In the order of the outline, inside on the right hand with y downwards.
struct Quad {
    Corner vCorners[4];
};

// Columns nFirst .. nLast; none when nFirst > nLast.
struct Interval {
    int nFirst, nLast;
};

Corner Project(const CMatrix& homography, double x, double y)
{
    double vSums[3];
    for (int i = 0; i < 3; ++i) vSums[i] = homography.At(i, 0) * x + homography.At(i, 1) * y + homography.At(i, 2);
    return {static_cast<float>(vSums[0] / vSums[2]), static_cast<float>(vSums[1] / vSums[2])};
}

// False when a corner is not finite.
bool ProjectRectangle(const CMatrix& homography, int nWidth, int nHeight, Quad& quad)
{
    const double xLast = nWidth - 1, yLast = nHeight - 1;
    const double vOutline[4][2] = {{0, 0}, {xLast, 0}, {xLast, yLast}, {0, yLast}};
    for (int i = 0; i < 4; ++i) {
        quad.vCorners[i] = Project(homography, vOutline[i][0], vOutline[i][1]);
        if (!std::isfinite(quad.vCorners[i].x) || !std::isfinite(quad.vCorners[i].y)) return false;
    }
    return true;
}

// Cross product of the edge p -> q with p -> (x, y); not negative on the inside.
float SideOf(const Corner& p, const Corner& q, float x, float y)
{
    return (q.x - p.x) * (y - p.y) - (q.y - p.y) * (x - p.x);
}

// The column in which the line through the row's two ends, of values fLeft and fRight of unlike sign, crosses 0.
int CrossingColumn(float fLeft, float fRight, int nLastColumn)
{
    const float fLast = static_cast<float>(nLastColumn);
    const float fColumn = fLast * fLeft / (fLeft - fRight);
    return fColumn < fLast ? static_cast<int>(fColumn) : nLastColumn;  // the last also where far corners overflow
}

Interval ValidColumns(const Quad& quad, int nWidth, int y)
{
    const int nLastColumn = nWidth - 1;
    Interval valid{0, nLastColumn};
    for (int i = 0; i < 4; ++i) {
        const Corner &p = quad.vCorners[i], &q = quad.vCorners[(i + 1) % 4];
        const float fLeft = SideOf(p, q, 0.0f, static_cast<float>(y));
        const float fRight = SideOf(p, q, static_cast<float>(nLastColumn), static_cast<float>(y));
        const bool bLeftInside = fLeft >= 0, bRightInside = fRight >= 0;
        if (!bLeftInside && !bRightInside) return {0, -1};
        if (bLeftInside && bRightInside) continue;
        const int nColumn = CrossingColumn(fLeft, fRight, nLastColumn);
        if (bLeftInside) {
            valid.nLast = std::min(valid.nLast, nColumn);
        } else {
            valid.nFirst = std::max(valid.nFirst, nColumn + 1);
        }
    }
    return valid;
}

// Zeroes the samples [nBegin, nEnd) of row y as far as the mask has them.
void ClearColumns(CImage& mask, int y, int nBegin, int nEnd)
{
    if (y >= mask.nHeight) return;
    nEnd = std::min(nEnd, mask.nWidth);
    if (nBegin < nEnd) std::memset(mask.Row(y) + nBegin, 0, static_cast<size_t>(nEnd - nBegin));
}

void ClearOutside(CImage& mask, int y, const Interval& valid, int nWidth)
{
    if (valid.nFirst > valid.nLast) return ClearColumns(mask, y, 0, nWidth);
    ClearColumns(mask, y, 0, valid.nFirst);
    ClearColumns(mask, y, valid.nLast + 1, nWidth);
}

}  // namespace

bool CutValidRegion(int nWidth, int nHeight, const CMatrix& homography, CImage& mask, CImage& referenceMask)
{
    if (nWidth <= 0 || nHeight <= 0 || homography.Rows() != 3 || homography.Cols() != 3) return false;
    if (!mask.AllocateGray(nWidth, nHeight)) return false;
    Quad quad{};
    const bool bFinite = ProjectRectangle(homography, nWidth, nHeight, quad);
    ParallelRows(nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const Interval valid = bFinite ? ValidColumns(quad, nWidth, y) : Interval{0, -1};
            std::memset(mask.Row(y), 255, static_cast<size_t>(nWidth));
            ClearOutside(mask, y, valid, nWidth);
            ClearOutside(referenceMask, y, valid, nWidth);
        }
    });
    return true;
}

}  // namespace vkr
