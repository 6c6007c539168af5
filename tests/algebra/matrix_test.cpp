#include "algebra/matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "algebra/singular_values.h"

namespace vkr {
namespace {

CMatrix Filled(int nRows, int nCols, const std::vector<double>& vValues)
{
    CMatrix matrix(nRows, nCols);
    for (int i = 0; i < nRows * nCols; ++i) matrix.At(i / nCols, i % nCols) = vValues[static_cast<size_t>(i)];
    return matrix;
}

CMatrix Random(std::mt19937& rng, int nRows, int nCols)
{
    std::uniform_real_distribution<double> pick(-3.0, 3.0);
    CMatrix matrix(nRows, nCols);
    for (int i = 0; i < nRows * nCols; ++i) matrix.At(i / nCols, i % nCols) = pick(rng);
    return matrix;
}

void ExpectNear(const CMatrix& want, const CMatrix& got, double fTolerance)
{
    ASSERT_EQ(want.Rows(), got.Rows());
    ASSERT_EQ(want.Cols(), got.Cols());
    for (int i = 0; i < want.Rows() * want.Cols(); ++i) {
        EXPECT_NEAR(want.At(i / want.Cols(), i % want.Cols()), got.At(i / want.Cols(), i % want.Cols()), fTolerance)
            << i;
    }
}

CMatrix Identity(int n)
{
    CMatrix matrix(n, n);
    matrix.Identity();
    return matrix;
}

TEST(Matrix, SizesThatDoNotFitLeaveNoStorage)
{
    for (const auto& size : {std::pair<int, int>{0, 3}, {3, 0}, {-1, 3}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MIN}}) {
        CMatrix matrix(2, 2);
        EXPECT_FALSE(matrix.Resize(size.first, size.second));
        EXPECT_EQ(0, matrix.Rows());
        EXPECT_EQ(0, matrix.Cols());
    }
    CVector vector(3);
    EXPECT_FALSE(vector.Resize(-1));
    EXPECT_EQ(0, vector.Size());
}

TEST(Matrix, ResizeGivesZerosAtTheSameSizeToo)
{
    CMatrix matrix = Filled(2, 2, {1, 2, 3, 4});
    ASSERT_TRUE(matrix.Resize(2, 2));
    ExpectNear(CMatrix(2, 2), matrix, 0.0);
}

TEST(Matrix, AssignmentTakesSizeAndValuesAndIsACopy)
{
    CMatrix target(1, 5), source = Filled(2, 3, {1, 2, 3, 4, 5, 6});
    target = source;
    source.At(1, 2) = 0.0;
    ExpectNear(Filled(2, 3, {1, 2, 3, 4, 5, 6}), target, 0.0);
    target = CMatrix();
    EXPECT_EQ(0, target.Rows());
    CVector first(2), second;
    first[1] = 7.0;
    second = first;
    first[1] = 0.0;
    EXPECT_EQ(7.0, second[1]);
}

TEST(Matrix, MultiplySumsFromLeftToRight)
{
    CMatrix out;
    CMatrix::Multiply(out, Filled(1, 3, {1.0, 1e17, -1e17}), Filled(3, 2, {1, 0, 1, 1, 1, 1}));
    ExpectNear(Filled(1, 2, {0.0, 0.0}), out, 0.0);
    CMatrix::Multiply(out, Filled(2, 3, {1, 2, 3, 4, 5, 6}), Filled(3, 1, {1, 10, 100}));
    ExpectNear(Filled(2, 1, {321, 654}), out, 0.0);
    CMatrix::Multiply(out, CMatrix(2, 3), CMatrix(2, 3));
    EXPECT_EQ(0, out.Rows());
}

TEST(Matrix, DivisionByZeroGivesZeros)
{
    CMatrix matrix = Filled(1, 2, {6, -3});
    matrix.DivideByScalar(-3.0);
    ExpectNear(Filled(1, 2, {-2, 1}), matrix, 0.0);
    matrix.DivideByScalar(0.0);
    ExpectNear(CMatrix(1, 2), matrix, 0.0);
}

TEST(MatrixInverse, TimesTheMatrixIsTheIdentity)
{
    std::mt19937 rng(45);
    for (int n = 1; n <= 9; ++n) {
        const CMatrix matrix = Random(rng, n, n);
        CMatrix inverse, product;
        ASSERT_EQ(0, CMatrix::Inverse(inverse, matrix));
        CMatrix::Multiply(product, matrix, inverse);
        ExpectNear(Identity(n), product, 1e-11);
        ASSERT_EQ(0, inverse.Invert());
        ExpectNear(matrix, inverse, 1e-9);
    }
}

TEST(MatrixInverse, ChoosesThePivotByScaledMagnitude)
{
    CMatrix inverse;
    ASSERT_EQ(0, CMatrix::Inverse(inverse, Filled(2, 2, {1, 1e20, 1, 1})));
    EXPECT_DOUBLE_EQ(-1e-20, inverse.At(0, 0));  // 0 with the first row as the pivot
    EXPECT_DOUBLE_EQ(1.0, inverse.At(0, 1));
    EXPECT_DOUBLE_EQ(1e-20, inverse.At(1, 0));
    EXPECT_DOUBLE_EQ(-1e-20, inverse.At(1, 1));
}

TEST(MatrixInverse, OfDeficientRankIsHugeAndTakesTheFirstOfEqualPivots)
{
    CMatrix inverse;
    ASSERT_EQ(0, CMatrix::Inverse(inverse, Filled(2, 2, {1, 2, 2, 4})));
    const double vWant[4] = {4e20, -2e20, -2e20, 1e20};
    for (int i = 0; i < 4; ++i) EXPECT_DOUBLE_EQ(vWant[i], inverse.At(i / 2, i % 2));
}

TEST(MatrixInverse, ReportsARowOfZeros)
{
    const CMatrix singular = Filled(2, 2, {1, 2, 0, 0});
    CMatrix inverse, inPlace = singular;
    EXPECT_EQ(CMatrix::kSingular, CMatrix::Inverse(inverse, singular));
    EXPECT_STREQ("LUDecomposition", inverse.szWhere);
    EXPECT_STREQ("Singular Matrix!", inverse.ErrorText());
    ExpectNear(CMatrix(2, 2), inverse, 0.0);
    EXPECT_EQ(CMatrix::kSingular, inPlace.Invert());
    ExpectNear(singular, inPlace, 0.0);
    EXPECT_EQ(CMatrix::kNoError, CMatrix::Inverse(inverse, Identity(2)));
    EXPECT_STREQ("", inverse.szWhere);
    EXPECT_STREQ("No error!", inverse.ErrorText());
    EXPECT_EQ(CMatrix::kSingular, CMatrix::Inverse(inverse, CMatrix(2, 3)));
    EXPECT_EQ(CMatrix::kSingular, CMatrix::Inverse(inverse, CMatrix()));
}

struct Parts {
    CMatrix u, v;
    CVector w;
};

void ExpectOrthonormalColumns(const CMatrix& matrix, int nFirst, int nEnd)
{
    for (int i = nFirst; i < nEnd; ++i) {
        for (int j = nFirst; j <= i; ++j) {
            double fSum = 0.0;
            for (int y = 0; y < matrix.Rows(); ++y) fSum += matrix.At(y, i) * matrix.At(y, j);
            EXPECT_NEAR(i == j ? 1.0 : 0.0, fSum, 1e-12) << i << ' ' << j;
        }
    }
}

void ExpectDecomposes(CMatrix& a, Parts& parts)
{
    const CMatrix before = a;
    ASSERT_EQ(0, CMatrix::SingularVlueDecomposition(a, parts.u, parts.w, parts.v));
    ExpectNear(before, a, 0.0);
    ASSERT_EQ(a.Cols(), parts.w.Size());
    CMatrix product(a.Rows(), a.Cols());
    for (int y = 0; y < a.Rows(); ++y) {
        for (int x = 0; x < a.Cols(); ++x) {
            for (int i = 0; i < a.Cols(); ++i) product.At(y, x) += parts.u.At(y, i) * parts.w[i] * parts.v.At(x, i);
        }
    }
    ExpectNear(a, product, 1e-12);
    ExpectOrthonormalColumns(parts.v, 0, a.Cols());
    if (a.Rows() >= a.Cols()) ExpectOrthonormalColumns(parts.u, 0, a.Cols());
    for (int i = 0; i < a.Cols(); ++i) EXPECT_GE(parts.w[i], 0.0);
}

TEST(SingularValues, RebuildTheMatrixAtEveryShape)
{
    std::mt19937 rng(9);
    for (int nRows = 1; nRows <= 12; ++nRows) {
        for (int nCols = 1; nCols <= 9; ++nCols) {
            SCOPED_TRACE(testing::Message() << nRows << " x " << nCols);
            CMatrix a = Random(rng, nRows, nCols);
            Parts parts;
            ExpectDecomposes(a, parts);
        }
    }
}

TEST(SingularValues, SurviveZerosAndDeficientRank)
{
    std::mt19937 rng(10);
    for (int nRank = 0; nRank <= 5; ++nRank) {
        CMatrix a;
        if (nRank == 0)
            a.Resize(7, 5);
        else
            CMatrix::Multiply(a, Random(rng, 7, nRank), Random(rng, nRank, 5));
        Parts parts;
        ExpectDecomposes(a, parts);
        int nZeros = 0;
        for (int i = 0; i < 5; ++i) nZeros += parts.w[i] < 1e-12 ? 1 : 0;
        EXPECT_EQ(5 - nRank, nZeros);
    }
    CMatrix bidiagonal = Filled(3, 3, {1, 1, 0, 0, 0, 1, 0, 0, 1});  // a w of 0 above a superdiagonal that is not
    Parts parts;
    ExpectDecomposes(bidiagonal, parts);
}

TEST(SingularValues, AreThoseOfADiagonalInItsOrder)
{
    CMatrix a = Filled(3, 3, {2, 0, 0, 0, -5, 0, 0, 0, 1});
    Parts parts;
    ExpectDecomposes(a, parts);
    EXPECT_EQ(2.0, parts.w[0]);
    EXPECT_EQ(5.0, parts.w[1]);
    EXPECT_EQ(1.0, parts.w[2]);
}

TEST(SingularValues, HaveTheSameBitsWithoutTheLeftSide)
{
    std::mt19937 rng(11);
    for (int nRows : {1, 8, 9, 40}) {
        CMatrix a = Random(rng, nRows, 9);
        Parts parts;
        ExpectDecomposes(a, parts);
        std::vector<double> vW(9), vV(81), vScratch(18);
        ASSERT_TRUE(DecomposeSingularValues(&a.At(0, 0), nRows, 9, vW.data(), vV.data(), vScratch.data(), false));
        for (int i = 0; i < 9; ++i) EXPECT_EQ(parts.w[i], vW[static_cast<size_t>(i)]);
        for (int i = 0; i < 81; ++i) EXPECT_EQ(parts.v.At(i / 9, i % 9), vV[static_cast<size_t>(i)]);
    }
}

TEST(SingularValues, OfWhatIsNotFiniteAreAnError)
{
    for (double fBad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e308}) {
        for (int n = fBad == 1e308 ? 3 : 1; n <= 4; ++n) {
            CMatrix a(n, n), u, v;
            CVector w;
            for (int i = 0; i < n * n; ++i) a.At(i / n, i % n) = fBad;
            EXPECT_EQ(CMatrix::kNoConvergence, CMatrix::SingularVlueDecomposition(a, u, w, v)) << fBad << ' ' << n;
            EXPECT_STREQ("SingularVlueDecomposition", a.szWhere);
            EXPECT_STREQ("No convergence in 30 SVD iterations", a.ErrorText());
        }
    }
    CMatrix empty, u, v;
    CVector w;
    EXPECT_EQ(CMatrix::kNoConvergence, CMatrix::SingularVlueDecomposition(empty, u, w, v));
}

}  // namespace
}  // namespace vkr
