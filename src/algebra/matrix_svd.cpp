#include <algorithm>
#include <cmath>
#include <cstring>

#include "algebra/matrix.h"
#include "algebra/singular_values.h"
#include "foundation/heap_buffer.h"

namespace vkr {
namespace {

// One decomposition under way. The matrix is reduced to the bidiagonal (w on the diagonal, e above it: e[i] stands over
// w[i], e[0] is 0), whose superdiagonal the QR iteration then drives to 0. Sums over a column are kept for all columns
// at once, so that memory is walked row by row; each of them still adds in the order of the rows.
struct Decomposition {
    double* pA;
    int nRows, nCols;
    double* pW;
    double* pV;
    double* pE;
    double* pSums;  // nCols
    bool bLeft;
    double fNorm;  // largest |w| + |e|: what adds nothing to it counts as 0

    double* Row(int y) const { return pA + static_cast<size_t>(y) * nCols; }
    double* VRow(int y) const { return pV + static_cast<size_t>(y) * nCols; }
    bool Negligible(double fValue) const { return std::fabs(fValue) + fNorm == fNorm; }
};

// The magnitude with the sign of fSign; a zero of either sign counts as positive, unlike std::copysign.
double WithSign(double fMagnitude, double fSign)
{
    return fSign >= 0.0 ? fMagnitude : -fMagnitude;
}

double SquareRootOfSquares(double a, double b)
{
    return std::sqrt(a * a + b * b);
}

// pSums[x] = sum of a(y, i) * a(y, x) over the rows from nFirstRow on, for x in (i, nCols).
void SumColumnProducts(const Decomposition& d, int i, int nFirstRow)
{
    std::fill(d.pSums + i + 1, d.pSums + d.nCols, 0.0);
    for (int y = nFirstRow; y < d.nRows; ++y) {
        const double* pRow = d.Row(y);
        for (int x = i + 1; x < d.nCols; ++x) d.pSums[x] += pRow[i] * pRow[x];
    }
}

// Rows from nFirstRow on: every column right of i gains its factor in pSums times column i.
void AddColumnMultiples(const Decomposition& d, int i, int nFirstRow)
{
    for (int y = nFirstRow; y < d.nRows; ++y) {
        double* pRow = d.Row(y);
        for (int x = i + 1; x < d.nCols; ++x) pRow[x] += d.pSums[x] * pRow[i];
    }
}

// Householder reflection that clears column i below the diagonal; its vector stays in the column. Returns the new w[i].
double ReflectColumn(const Decomposition& d, int i)
{
    if (i >= d.nRows) return 0.0;
    double fScale = 0.0;
    for (int y = i; y < d.nRows; ++y) fScale += std::fabs(d.Row(y)[i]);
    if (fScale == 0.0) return 0.0;
    double fSquares = 0.0;
    for (int y = i; y < d.nRows; ++y) {
        double& fValue = d.Row(y)[i];
        fValue /= fScale;
        fSquares += fValue * fValue;
    }
    double& fHead = d.Row(i)[i];
    const double fLength = -WithSign(std::sqrt(fSquares), fHead);
    const double fHalf = fHead * fLength - fSquares;
    fHead -= fLength;
    SumColumnProducts(d, i, i);
    for (int x = i + 1; x < d.nCols; ++x) d.pSums[x] /= fHalf;
    AddColumnMultiples(d, i, i);
    for (int y = i; y < d.nRows; ++y) d.Row(y)[i] *= fScale;
    return fScale * fLength;
}

// The same for row i right of the superdiagonal. Returns the new e[i + 1].
double ReflectRow(const Decomposition& d, int i)
{
    const int nFirst = i + 1;
    if (i >= d.nRows || nFirst >= d.nCols) return 0.0;
    double* pRow = d.Row(i);
    double fScale = 0.0;
    for (int x = nFirst; x < d.nCols; ++x) fScale += std::fabs(pRow[x]);
    if (fScale == 0.0) return 0.0;
    double fSquares = 0.0;
    for (int x = nFirst; x < d.nCols; ++x) {
        pRow[x] /= fScale;
        fSquares += pRow[x] * pRow[x];
    }
    const double fLength = -WithSign(std::sqrt(fSquares), pRow[nFirst]);
    const double fHalf = pRow[nFirst] * fLength - fSquares;
    pRow[nFirst] -= fLength;
    for (int x = nFirst; x < d.nCols; ++x) d.pSums[x] = pRow[x] / fHalf;
    for (int y = nFirst; y < d.nRows; ++y) {
        double* pOther = d.Row(y);
        double fSum = 0.0;
        for (int x = nFirst; x < d.nCols; ++x) fSum += pOther[x] * pRow[x];
        for (int x = nFirst; x < d.nCols; ++x) pOther[x] += fSum * d.pSums[x];
    }
    for (int x = nFirst; x < d.nCols; ++x) pRow[x] *= fScale;
    return fScale * fLength;
}

void Bidiagonalise(Decomposition& d)
{
    d.fNorm = 0.0;
    d.pE[0] = 0.0;
    for (int i = 0; i < d.nCols; ++i) {
        d.pW[i] = ReflectColumn(d, i);
        d.fNorm = std::max(d.fNorm, std::fabs(d.pW[i]) + std::fabs(d.pE[i]));
        const double fAbove = ReflectRow(d, i);
        if (i + 1 < d.nCols) d.pE[i + 1] = fAbove;
    }
}

// v = product of the row reflections, from the last to the first.
void AccumulateRight(const Decomposition& d)
{
    for (int i = d.nCols - 1; i >= 0; --i) {
        const int nFirst = i + 1;
        if (nFirst < d.nCols && d.pE[nFirst] != 0.0) {
            const double* pRow = d.Row(i);
            // Two divisions: the product of the divisors could underflow.
            for (int y = nFirst; y < d.nCols; ++y) d.VRow(y)[i] = pRow[y] / pRow[nFirst] / d.pE[nFirst];
            std::fill(d.pSums + nFirst, d.pSums + d.nCols, 0.0);
            for (int y = nFirst; y < d.nCols; ++y) {
                for (int x = nFirst; x < d.nCols; ++x) d.pSums[x] += pRow[y] * d.VRow(y)[x];
            }
            for (int y = nFirst; y < d.nCols; ++y) {
                for (int x = nFirst; x < d.nCols; ++x) d.VRow(y)[x] += d.pSums[x] * d.VRow(y)[i];
            }
        }
        for (int j = nFirst; j < d.nCols; ++j) d.VRow(i)[j] = d.VRow(j)[i] = 0.0;
        d.VRow(i)[i] = 1.0;
    }
}

// u = product of the column reflections, in the place of the matrix.
void AccumulateLeft(const Decomposition& d)
{
    for (int i = std::min(d.nRows, d.nCols) - 1; i >= 0; --i) {
        double* pRow = d.Row(i);
        std::fill(pRow + i + 1, pRow + d.nCols, 0.0);
        const double fLength = d.pW[i];
        if (fLength != 0.0) {
            SumColumnProducts(d, i, i + 1);
            for (int x = i + 1; x < d.nCols; ++x) d.pSums[x] = d.pSums[x] / pRow[i] / fLength;
            AddColumnMultiples(d, i, i);
        }
        for (int y = i; y < d.nRows; ++y) d.Row(y)[i] = fLength != 0.0 ? d.Row(y)[i] / fLength : 0.0;
        pRow[i] += 1.0;
    }
}

// Turns two columns of a row-major matrix.
void RotateColumns(double* pMatrix, int nRows, int nCols, int nFirst, int nSecond, double fCos, double fSin)
{
    for (int y = 0; y < nRows; ++y) {
        double* pRow = pMatrix + static_cast<size_t>(y) * nCols;
        const double fFirst = pRow[nFirst], fSecond = pRow[nSecond];
        pRow[nFirst] = fFirst * fCos + fSecond * fSin;
        pRow[nSecond] = fSecond * fCos - fFirst * fSin;
    }
}

void RotateLeft(const Decomposition& d, int nFirst, int nSecond, double fCos, double fSin)
{
    if (d.bLeft) RotateColumns(d.pA, d.nRows, d.nCols, nFirst, nSecond, fCos, fSin);
}

// First index of the block that ends in k and hangs together. bCancel: it ends because w before it is 0, while e[first]
// is not.
int FindBlock(const Decomposition& d, int k, bool& bCancel)
{
    bCancel = false;
    for (int i = k; i > 0; --i) {
        if (d.Negligible(d.pE[i])) return i;
        if (d.Negligible(d.pW[i - 1])) {
            bCancel = true;
            return i;
        }
    }
    return 0;  // e[0] is 0 by definition, also where NaN has spoilt the norm
}

// Rotates e[nFirst] away beside a w of 0.
void CancelSuperdiagonal(const Decomposition& d, int nFirst, int k)
{
    double fCos = 0.0, fSin = 1.0;
    for (int i = nFirst; i <= k; ++i) {
        const double f = fSin * d.pE[i];
        d.pE[i] = fCos * d.pE[i];
        if (d.Negligible(f)) return;
        const double g = d.pW[i];
        d.pW[i] = SquareRootOfSquares(f, g);
        const double fReciprocal = 1.0 / d.pW[i];
        fCos = g * fReciprocal;
        fSin = -f * fReciprocal;
        RotateLeft(d, nFirst - 1, i, fCos, fSin);
    }
}

// Start of the sweep over [nFirst, k]: the shift from the lower right 2 x 2 block.
double ShiftedHead(const Decomposition& d, int nFirst, int k)
{
    const double x = d.pW[nFirst], y = d.pW[k - 1], z = d.pW[k];
    const double g = d.pE[k - 1], h = d.pE[k];
    const double f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2.0 * h * y);
    const double fRoot = WithSign(SquareRootOfSquares(f, 1.0), f);
    return ((x - z) * (x + z) + h * (y / (f + fRoot) - h)) / x;
}

// One implicit QR sweep: each pair of rotations chases the bulge one place down.
void SweepBlock(const Decomposition& d, int nFirst, int k)
{
    double f = ShiftedHead(d, nFirst, k), x = d.pW[nFirst];
    double fCos = 1.0, fSin = 1.0;
    for (int j = nFirst; j < k; ++j) {
        const int i = j + 1;
        const double fAbove = d.pE[i], fBelow = d.pW[i];
        double h = fSin * fAbove, g = fCos * fAbove;
        double z = SquareRootOfSquares(f, h);
        d.pE[j] = z;
        fCos = z != 0.0 ? f / z : 1.0;  // nothing to turn
        fSin = z != 0.0 ? h / z : 0.0;
        f = x * fCos + g * fSin;
        g = g * fCos - x * fSin;
        h = fBelow * fSin;
        const double y = fBelow * fCos;
        RotateColumns(d.pV, d.nCols, d.nCols, j, i, fCos, fSin);
        z = SquareRootOfSquares(f, h);
        d.pW[j] = z;
        if (z != 0.0) {  // any rotation will do when z is 0
            z = 1.0 / z;
            fCos = f * z;
            fSin = h * z;
        }
        f = fCos * g + fSin * y;
        x = fCos * y - fSin * g;
        RotateLeft(d, j, i, fCos, fSin);
    }
    d.pE[nFirst] = 0.0;
    d.pE[k] = f;
    d.pW[k] = x;
}

void MakePositive(const Decomposition& d, int k)
{
    if (!(d.pW[k] < 0.0)) return;
    d.pW[k] = -d.pW[k];
    for (int y = 0; y < d.nCols; ++y) d.VRow(y)[k] = -d.VRow(y)[k];
}

// Settles w[k] by itself. False when it has not converged.
bool SettleValue(const Decomposition& d, int k)
{
    for (int nIteration = 1;; ++nIteration) {
        bool bCancel = false;
        const int nFirst = FindBlock(d, k, bCancel);
        if (bCancel) CancelSuperdiagonal(d, nFirst, k);
        if (nFirst == k) {
            MakePositive(d, k);
            return true;
        }
        if (nIteration == kSvdIterations) return false;
        SweepBlock(d, nFirst, k);
    }
}

}  // namespace

bool DecomposeSingularValues(double* pA, int nRows, int nCols, double* pW, double* pV, double* pScratch, bool bLeft)
{
    Decomposition d{pA, nRows, nCols, pW, pV, pScratch, pScratch + nCols, bLeft, 0.0};
    Bidiagonalise(d);
    AccumulateRight(d);
    if (bLeft) AccumulateLeft(d);
    for (int k = nCols - 1; k >= 0; --k) {
        if (!SettleValue(d, k)) return false;
    }
    // A NaN that stands alone passes for a block of its own.
    return std::all_of(pW, pW + nCols, [](double fValue) { return std::isfinite(fValue); });
}

int32_t CMatrix::SingularVlueDecomposition(CMatrix& a, CMatrix& u, CVector& w, CMatrix& v)
{
    HeapBuffer<double> scratch;
    u = a;
    const size_t nScratch = 2 * static_cast<size_t>(a.nCols);
    const bool bReady = u.nRows > 0 && v.Resize(a.nCols, a.nCols) && w.Resize(a.nCols) && scratch.Allocate(nScratch);
    if (!bReady || !DecomposeSingularValues(u.pData, u.nRows, u.nCols, &w[0], v.pData, scratch.Data(), true)) {
        return a.SetError(kNoConvergence, "SingularVlueDecomposition");
    }
    return a.SetError(kNoError, "");
}

}  // namespace vkr
