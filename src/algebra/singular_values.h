#pragma once

namespace vkr {

constexpr int kSvdIterations = 30;  // a singular value

// Singular value decomposition on the caller's memory, row-major: a = u * diag(w) * transposed v.
//
//   pA        nRows x nCols, any shape; consumed. With bLeft it receives u, else its contents are of no use afterwards
//   pW        nCols values >= 0, unsorted; the surplus ones of a wide matrix are 0
//   pV        nCols x nCols
//   pScratch  2 * nCols
//   bLeft     w and v have the same bits either way: the left side is never read again and costs most for tall matrices
//
// False when a value has not converged in kSvdIterations (as with NaN or infinity inside); w and v are then unfinished.
bool DecomposeSingularValues(double* pA, int nRows, int nCols, double* pW, double* pV, double* pScratch, bool bLeft);

}  // namespace vkr
