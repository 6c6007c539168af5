#include "algebra/matrix.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace vkr {
namespace {

// Zero-filled; null for a size that is not positive or does not fit into memory.
double* AllocateZeroed(int nRowCount, int nColCount)
{
    if (nRowCount <= 0 || nColCount <= 0) return nullptr;
    const size_t nRowLength = static_cast<size_t>(nColCount);
    if (static_cast<size_t>(nRowCount) > static_cast<size_t>(-1) / sizeof(double) / nRowLength) return nullptr;
    return static_cast<double*>(std::calloc(static_cast<size_t>(nRowCount) * nRowLength, sizeof(double)));
}

}  // namespace

CVector::CVector(const CVector& other)
{
    *this = other;
}

CVector& CVector::operator=(const CVector& other)
{
    if (this == &other) return *this;
    if (Resize(other.nSize)) std::memcpy(pData, other.pData, static_cast<size_t>(nSize) * sizeof(double));
    return *this;
}

CVector::~CVector()
{
    std::free(pData);
}

bool CVector::Resize(int nCount)
{
    std::free(pData);
    pData = AllocateZeroed(nCount, 1);
    nSize = pData != nullptr ? nCount : 0;
    return pData != nullptr;
}

CMatrix::CMatrix(const CMatrix& other)
{
    *this = other;
}

CMatrix& CMatrix::operator=(const CMatrix& other)
{
    if (this == &other) return *this;
    if (Resize(other.nRows, other.nCols)) std::memcpy(pData, other.pData, Count() * sizeof(double));
    return *this;
}

CMatrix::~CMatrix()
{
    Free();
}

void CMatrix::Free()
{
    if (pData != vInside) std::free(pData);
    pData = nullptr;
}

void CMatrix::Swap(CMatrix& other)
{
    const bool bInside = pData == vInside, bOtherInside = other.pData == other.vInside;
    std::swap(pData, other.pData);
    std::swap(vInside, other.vInside);
    if (bOtherInside) pData = vInside;
    if (bInside) other.pData = other.vInside;
    std::swap(nRows, other.nRows);
    std::swap(nCols, other.nCols);
}

bool CMatrix::Resize(int nRowCount, int nColCount)
{
    if (pData != nullptr && nRowCount == nRows && nColCount == nCols) {  // a result that is written again and again
        std::memset(pData, 0, Count() * sizeof(double));
        return true;
    }
    Free();
    if (nRowCount > 0 && nColCount > 0 && nRowCount <= kInside && nColCount <= kInside / nRowCount) {
        pData = vInside;
        std::memset(vInside, 0, sizeof(vInside));
    } else {
        pData = AllocateZeroed(nRowCount, nColCount);
    }
    nRows = pData != nullptr ? nRowCount : 0;
    nCols = pData != nullptr ? nColCount : 0;
    return pData != nullptr;
}

void CMatrix::Identity()
{
    for (int y = 0; y < nRows; ++y) {
        for (int x = 0; x < nCols; ++x) At(y, x) = x == y ? 1.0 : 0.0;
    }
}

void CMatrix::DivideByScalar(double fDivisor)
{
    for (size_t i = 0; i < Count(); ++i) pData[i] = fDivisor != 0.0 ? pData[i] / fDivisor : 0.0;
}

int32_t CMatrix::Invert()
{
    CMatrix inverse;
    if (Inverse(inverse, *this) == kNoError) Swap(inverse);
    nError = inverse.nError;
    std::memcpy(szWhere, inverse.szWhere, sizeof(szWhere));
    return nError;
}

void CMatrix::Multiply(CMatrix& out, const CMatrix& a, const CMatrix& b)
{
    if (!out.Resize(a.nRows, a.nCols == b.nRows ? b.nCols : 0)) return;
    for (int y = 0; y < a.nRows; ++y) {
        for (int x = 0; x < b.nCols; ++x) {
            double fSum = 0.0;
            for (int i = 0; i < a.nCols; ++i) fSum += a.At(y, i) * b.At(i, x);
            out.At(y, x) = fSum;
        }
    }
}

const char* CMatrix::ErrorText() const
{
    if (nError == kSingular) return "Singular Matrix!";
    return nError == kNoConvergence ? "No convergence in 30 SVD iterations" : "No error!";
}

int32_t CMatrix::SetError(Error error, const char* pWhere)
{
    nError = error;
    std::memset(szWhere, 0, sizeof(szWhere));
    std::strncpy(szWhere, pWhere, sizeof(szWhere) - 1);
    return nError;
}

CMatrix IdentityHomography()
{
    CMatrix homography(3, 3);
    homography.Identity();
    return homography;
}

}  // namespace vkr
