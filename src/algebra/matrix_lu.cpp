#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "foundation/heap_buffer.h"

namespace vkr {
namespace {

constexpr double kTinyPivot = 1e-20;  // stands in for a pivot of exactly 0: the inverse is huge but finite

// The factors of a square matrix in place: L below the diagonal (its own diagonal is 1), U on and above it.
struct LuFactors {
    CMatrix factors;
    HeapBuffer<int32_t> pivotRows;  // row that was exchanged with row i
    HeapBuffer<double> scales;      // 1 / largest magnitude of each row, moves with its row

    bool Take(const CMatrix& in)
    {
        factors = in;
        const size_t n = static_cast<size_t>(in.Rows());
        return in.Rows() > 0 && factors.Rows() == in.Rows() && pivotRows.Allocate(n) && scales.Allocate(n);
    }
};

// False for a row of zeros. A row of nothing but NaN counts as one.
bool ScaleRows(LuFactors& lu)
{
    const int n = lu.factors.Rows();
    for (int y = 0; y < n; ++y) {
        double fLargest = 0.0;
        for (int x = 0; x < n; ++x) {
            const double fMagnitude = std::fabs(lu.factors.At(y, x));
            if (fMagnitude > fLargest) fLargest = fMagnitude;
        }
        if (fLargest == 0.0) return false;
        lu.scales[y] = 1.0 / fLargest;
    }
    return true;
}

// a(y, x) less the part that the first nCount columns and rows already explain.
void ReduceElement(CMatrix& a, int y, int x, int nCount)
{
    double fSum = a.At(y, x);
    for (int i = 0; i < nCount; ++i) fSum -= a.At(y, i) * a.At(i, x);
    a.At(y, x) = fSum;
}

// The row of the largest scaled magnitude in column j, at or below the diagonal; the first of equal ones.
int FindPivotRow(const LuFactors& lu, int j)
{
    int nPivotRow = j;
    double fLargest = 0.0;
    for (int y = j; y < lu.factors.Rows(); ++y) {
        const double fMagnitude = lu.scales[y] * std::fabs(lu.factors.At(y, j));
        if (fMagnitude > fLargest) {
            fLargest = fMagnitude;
            nPivotRow = y;
        }
    }
    return nPivotRow;
}

void ExchangeRows(LuFactors& lu, int nFirst, int nSecond)
{
    if (nFirst == nSecond) return;
    for (int x = 0; x < lu.factors.Cols(); ++x) std::swap(lu.factors.At(nFirst, x), lu.factors.At(nSecond, x));
    lu.scales[nFirst] = lu.scales[nSecond];
}

// Crout's method, column by column, with partial pivoting and implicit row scaling. False for a row of zeros.
bool LUDecomposition(LuFactors& lu)
{
    if (!ScaleRows(lu)) return false;
    CMatrix& a = lu.factors;
    const int n = a.Rows();
    for (int j = 0; j < n; ++j) {
        for (int y = 0; y < j; ++y) ReduceElement(a, y, j, y);
        for (int y = j; y < n; ++y) ReduceElement(a, y, j, j);
        const int nPivotRow = FindPivotRow(lu, j);
        ExchangeRows(lu, nPivotRow, j);
        lu.pivotRows[j] = nPivotRow;
        if (a.At(j, j) == 0.0) a.At(j, j) = kTinyPivot;
        for (int y = j + 1; y < n; ++y) a.At(y, j) /= a.At(j, j);
    }
    return true;
}

// Solves for one column of out, which holds the right side and receives the solution.
void SubstituteColumn(const LuFactors& lu, CMatrix& out, int nCol)
{
    const CMatrix& a = lu.factors;
    const int n = a.Rows();
    int nFirstNonZero = -1;  // the leading zeros of the permuted right side need no products
    for (int y = 0; y < n; ++y) {
        double fSum = out.At(lu.pivotRows[y], nCol);
        out.At(lu.pivotRows[y], nCol) = out.At(y, nCol);
        if (nFirstNonZero >= 0) {
            for (int i = nFirstNonZero; i < y; ++i) fSum -= a.At(y, i) * out.At(i, nCol);
        } else if (fSum != 0.0) {
            nFirstNonZero = y;
        }
        out.At(y, nCol) = fSum;
    }
    for (int y = n - 1; y >= 0; --y) {
        double fSum = out.At(y, nCol);
        for (int i = y + 1; i < n; ++i) fSum -= a.At(y, i) * out.At(i, nCol);
        out.At(y, nCol) = fSum / a.At(y, y);
    }
}

}  // namespace

int32_t CMatrix::Inverse(CMatrix& out, const CMatrix& in)
{
    LuFactors lu;
    const bool bSquare = in.nRows == in.nCols;
    if (!out.Resize(bSquare ? in.nRows : 0, in.nCols) || !lu.Take(in) || !LUDecomposition(lu)) {
        return out.SetError(kSingular, "LUDecomposition");
    }
    out.Identity();
    for (int x = 0; x < out.nCols; ++x) SubstituteColumn(lu, out, x);
    return out.SetError(kNoError, "");
}

}  // namespace vkr
