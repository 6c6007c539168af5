#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// Small dense matrices of doubles, row-major, owned by the object: up to 3 x 3 elements inside it, so that a homography
// never lacks memory, more on the general heap. Errors stay in the object: the operations that can fail return nError
// and tell in szWhere which of them set it; a success clears both. Assignment and copies take the values, not the
// error. A matrix of a non-positive or overflowing size, or without memory, has no storage and nRows = nCols = 0. Not
// thread-safe.
class CVector {
public:
    CVector() = default;
    explicit CVector(int nCount) { Resize(nCount); }
    CVector(const CVector& other);
    CVector& operator=(const CVector& other);
    ~CVector();

    bool Resize(int nCount);  // zero-filled; false when it has no storage
    int Size() const { return nSize; }
    double& operator[](int i) { return pData[i]; }
    double operator[](int i) const { return pData[i]; }

private:
    double* pData = nullptr;
    int32_t nSize = 0;
};

class CMatrix {
public:
    enum Error : int32_t { kNoError = 0, kSingular = 1, kNoConvergence = 2 };

    CMatrix() = default;
    CMatrix(int nRowCount, int nColCount) { Resize(nRowCount, nColCount); }
    CMatrix(const CMatrix& other);
    CMatrix& operator=(const CMatrix& other);  // takes the other's size and values
    ~CMatrix();

    void Swap(CMatrix& other);                  // values and sizes; needs no memory
    bool Resize(int nRowCount, int nColCount);  // zero-filled; false when it has no storage
    void Identity();                            // 1 on the diagonal, 0 elsewhere
    void DivideByScalar(double fDivisor);       // every element; by 0: all become 0
    int32_t Invert();                           // in place; with an error the values stay

    int Rows() const { return nRows; }
    int Cols() const { return nCols; }
    double& At(int nRow, int nCol) { return pData[static_cast<size_t>(nRow) * nCols + nCol]; }
    double At(int nRow, int nCol) const { return pData[static_cast<size_t>(nRow) * nCols + nCol]; }

    // out = a * b, each sum from left to right; a has as many columns as b has rows, else out is empty. out is neither
    // a nor b.
    static void Multiply(CMatrix& out, const CMatrix& a, const CMatrix& b);

    // out = inverse of in by LU with partial pivoting and implicit row scaling; a pivot of exactly 0 becomes 1e-20.
    // A row of zeros is the error kSingular of out, which is then all 0; so are a matrix that is not square and lack of
    // memory, where out may be empty. out is not in.
    static int32_t Inverse(CMatrix& out, const CMatrix& in);

    // a (m x n) = u * diag(w) * transposed v: u m x n, w n values >= 0, unsorted, v n x n. The result is a's error
    // word; its values stay. kNoConvergence also stands for an empty matrix and for lack of memory. a, u and v are
    // three.
    static int32_t SingularVlueDecomposition(CMatrix& a, CMatrix& u, CVector& w, CMatrix& v);

    const char* ErrorText() const;
    int32_t nError = kNoError;
    char szWhere[32] = {};

private:
    size_t Count() const { return static_cast<size_t>(nRows) * static_cast<size_t>(nCols); }
    int32_t SetError(Error error, const char* pWhere);

    static constexpr int kInside = 9;
    void Free();

    double* pData = nullptr;  // vInside, the heap or null
    int32_t nRows = 0, nCols = 0;
    double vInside[kInside] = {};
};

// A 3 x 3 identity.
CMatrix IdentityHomography();

}  // namespace vkr
