#include "align/homography_solver.h"

#include <cmath>

#include "algebra/singular_values.h"

namespace vkr {
namespace {

constexpr double kSqrt2 = 1.4142135623730951;
constexpr int kUnknowns = 9;

// x' = fScale * x + fShiftX: brings a set of points to centroid 0 and mean distance sqrt(2) from it.
struct Similarity {
    double fScale, fShiftX, fShiftY;

    double X(PointF point) const { return fScale * point.x + fShiftX; }
    double Y(PointF point) const { return fScale * point.y + fShiftY; }
};

// Points that are all equal give the scale 0.
Similarity NormalisePoints(const PointF* pPoints, int n)
{
    double fMeanX = 0.0, fMeanY = 0.0;
    for (int i = 0; i < n; ++i) {
        fMeanX += pPoints[i].x;
        fMeanY += pPoints[i].y;
    }
    fMeanX /= n;
    fMeanY /= n;
    double fDistance = 0.0;
    for (int i = 0; i < n; ++i) {
        const double fX = pPoints[i].x - fMeanX, fY = pPoints[i].y - fMeanY;
        fDistance += std::sqrt(fX * fX + fY * fY);
    }
    fDistance /= n;
    if (fDistance == 0.0) return {0.0, 0.0, 0.0};
    return {kSqrt2 / fDistance, -fMeanX * kSqrt2 / fDistance, -fMeanY * kSqrt2 / fDistance};
}

bool ToMatrix(const Similarity& similarity, CMatrix& matrix)
{
    if (!matrix.Resize(3, 3)) return false;
    matrix.At(0, 0) = matrix.At(1, 1) = similarity.fScale;
    matrix.At(0, 2) = similarity.fShiftX;
    matrix.At(1, 2) = similarity.fShiftY;
    matrix.At(2, 2) = 1.0;
    return true;
}

// Two equations: (x, y) of the first picture is where the homography takes (u, v) of the second.
void WriteEquations(double x, double y, double u, double v, double* pRows)
{
    const double vEquations[2 * kUnknowns] = {u,   v,   1.0, 0.0, 0.0, 0.0, -x * u, -x * v, -x,   // of x
                                              0.0, 0.0, 0.0, u,   v,   1.0, -y * u, -y * v, -y};  // of y
    for (int i = 0; i < 2 * kUnknowns; ++i) pRows[i] = vEquations[i];
}

// The unit vector that the equations take nearest to 0, as a matrix. A decomposition that has not converged gives what
// it has: few pairs will agree with it.
bool SolveEquations(double* pRows, int nRows, CMatrix& solution)
{
    double vValues[kUnknowns], vRight[kUnknowns * kUnknowns], vScratch[2 * kUnknowns];
    (void)DecomposeSingularValues(pRows, nRows, kUnknowns, vValues, vRight, vScratch, false);
    int nSmallest = 0;
    for (int i = 1; i < kUnknowns; ++i) {
        if (vValues[i] < vValues[nSmallest]) nSmallest = i;
    }
    if (!solution.Resize(3, 3)) return false;
    for (int i = 0; i < kUnknowns; ++i) solution.At(i / 3, i % 3) = vRight[i * kUnknowns + nSmallest];
    return true;
}

// homography = inverse(first) * solution * second. Equal points leave a singular normalisation, hence a matrix of
// zeros.
bool Denormalise(const Similarity& first, const CMatrix& solution, const Similarity& second, CMatrix& homography)
{
    CMatrix firstMatrix, secondMatrix, inverse, half, whole;
    if (!ToMatrix(first, firstMatrix) || !ToMatrix(second, secondMatrix)) return false;
    CMatrix::Inverse(inverse, firstMatrix);
    CMatrix::Multiply(half, inverse, solution);
    CMatrix::Multiply(whole, half, secondMatrix);
    if (whole.Rows() != 3) return false;
    if (whole.At(2, 2) != 0.0) whole.DivideByScalar(whole.At(2, 2));
    homography.Swap(whole);
    return true;
}

}  // namespace

bool HomographyWorkspace::Reserve(int n)
{
    const size_t nPairSize = 2 * kUnknowns * sizeof(double);
    if (n < 0 || static_cast<size_t>(n) > static_cast<size_t>(-1) / nPairSize) return false;
    return rows.Allocate(static_cast<size_t>(n) * 2 * kUnknowns);
}

bool SolveHomography(const PointF* pFirst, const PointF* pSecond, int n, CMatrix& homography)
{
    HomographyWorkspace workspace;
    return n >= 4 && workspace.Reserve(n) && SolveHomography(pFirst, pSecond, n, homography, workspace);
}

bool SolveHomography(const PointF* pFirst, const PointF* pSecond, int n, CMatrix& homography,
                     HomographyWorkspace& workspace)
{
    if (n < 4 || workspace.rows.Count() / (2 * kUnknowns) < static_cast<size_t>(n)) return false;
    const Similarity first = NormalisePoints(pFirst, n), second = NormalisePoints(pSecond, n);
    double* pRow = workspace.rows.Data();
    for (int i = 0; i < n; ++i, pRow += 2 * kUnknowns) {
        WriteEquations(first.X(pFirst[i]), first.Y(pFirst[i]), second.X(pSecond[i]), second.Y(pSecond[i]), pRow);
    }
    CMatrix solution;
    return SolveEquations(workspace.rows.Data(), 2 * n, solution) && Denormalise(first, solution, second, homography);
}

}  // namespace vkr
