#pragma once

#include "algebra/matrix.h"
#include "foundation/heap_buffer.h"

namespace vkr {

// A point in pixels with the origin at the picture's centre.
struct PointF {
    float x, y;
};

// Memory of the solver, for callers that solve again and again: Reserve once for the largest n, then no solve allocates
// rows. One solve at a time.
struct HomographyWorkspace {
    HeapBuffer<double> rows;  // two equations of nine coefficients a pair

    bool Reserve(int n);  // pairs; false without memory
};

// Homography that takes pSecond[i] to pFirst[i] in the least-squares sense: normalised direct linear transform by
// singular value decomposition, divided by its bottom right element when that is not 0. False, homography untouched,
// for n < 4 or without memory. Degenerate points (collinear, equal) give some matrix, possibly not finite.
// The form with a workspace needs Reserve(n or more) before.
bool SolveHomography(const PointF* pFirst, const PointF* pSecond, int n, CMatrix& homography);
bool SolveHomography(const PointF* pFirst, const PointF* pSecond, int n, CMatrix& homography,
                     HomographyWorkspace& workspace);

}  // namespace vkr
