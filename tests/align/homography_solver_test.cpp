#include "align/homography_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace vkr {
namespace {

const double kTilted[9] = {1.02, -0.03, 14.5, 0.02, 0.97, -8.25, 2e-5, -1e-5, 1.0};

PointF Project(const double* h, PointF p)
{
    const double fDenominator = h[6] * p.x + h[7] * p.y + h[8];
    return {static_cast<float>((h[0] * p.x + h[1] * p.y + h[2]) / fDenominator),
            static_cast<float>((h[3] * p.x + h[4] * p.y + h[5]) / fDenominator)};
}

struct Points {
    std::vector<PointF> vFirst, vSecond;
    int Count() const { return static_cast<int>(vFirst.size()); }
};

Points RandomPoints(std::mt19937& rng, int n, float fNoise)
{
    std::uniform_real_distribution<float> pickX(-900.0f, 1100.0f), pickY(-700.0f, 500.0f), noise(-fNoise, fNoise);
    Points points;
    for (int i = 0; i < n; ++i) {
        points.vSecond.push_back({pickX(rng), pickY(rng)});
        PointF first = Project(kTilted, points.vSecond.back());
        first.x += noise(rng);
        first.y += noise(rng);
        points.vFirst.push_back(first);
    }
    return points;
}

// The same least squares a slow way: the eigenvector of the smallest eigenvalue of the normal matrix, by Jacobi
// rotations in long double.
using Square = long double[9][9];

void JacobiRotate(Square& a, Square& v, int p, int q)
{
    if (a[p][q] == 0.0L) return;
    const long double angle = std::atan2(2.0L * a[p][q], a[q][q] - a[p][p]) / 2.0L;
    const long double c = std::cos(angle), s = std::sin(angle);
    for (int i = 0; i < 9; ++i) {
        const long double x = a[i][p], y = a[i][q];
        a[i][p] = c * x - s * y;
        a[i][q] = s * x + c * y;
    }
    for (int i = 0; i < 9; ++i) {
        const long double x = a[p][i], y = a[q][i];
        a[p][i] = c * x - s * y;
        a[q][i] = s * x + c * y;
    }
    for (int i = 0; i < 9; ++i) {
        const long double x = v[i][p], y = v[i][q];
        v[i][p] = c * x - s * y;
        v[i][q] = s * x + c * y;
    }
}

struct Frame {
    long double fX = 0, fY = 0, fDistance = 0;
    explicit Frame(const std::vector<PointF>& vPoints)
    {
        for (PointF p : vPoints) fX += p.x, fY += p.y;
        fX /= vPoints.size();
        fY /= vPoints.size();
        for (PointF p : vPoints) fDistance += std::hypot(p.x - fX, p.y - fY);
        fDistance /= vPoints.size();
    }
    long double Scale() const { return std::sqrt(2.0L) / fDistance; }
};

std::vector<double> SlowHomography(const Points& points)
{
    const Frame first(points.vFirst), second(points.vSecond);
    Square a = {}, v = {};
    for (int i = 0; i < 9; ++i) v[i][i] = 1.0L;
    for (size_t k = 0; k < points.vFirst.size(); ++k) {
        const long double x = (points.vFirst[k].x - first.fX) * first.Scale();
        const long double y = (points.vFirst[k].y - first.fY) * first.Scale();
        const long double s = (points.vSecond[k].x - second.fX) * second.Scale();
        const long double t = (points.vSecond[k].y - second.fY) * second.Scale();
        const long double vRows[2][9] = {{s, t, 1, 0, 0, 0, -x * s, -x * t, -x},
                                         {0, 0, 0, s, t, 1, -y * s, -y * t, -y}};
        for (const auto& row : vRows) {
            for (int i = 0; i < 81; ++i) a[i / 9][i % 9] += row[i / 9] * row[i % 9];
        }
    }
    for (int nSweep = 0; nSweep < 30; ++nSweep) {
        for (int p = 0; p < 9; ++p) {
            for (int q = p + 1; q < 9; ++q) JacobiRotate(a, v, p, q);
        }
    }
    int nSmallest = 0;
    for (int i = 1; i < 9; ++i) nSmallest = a[i][i] < a[nSmallest][nSmallest] ? i : nSmallest;
    // Undo the normalisation: first as x = x' / scale + centre, then second as s = (s' - centre) * scale.
    std::vector<double> vResult(9);
    long double h[3][3];
    for (int i = 0; i < 9; ++i) h[i / 3][i % 3] = v[i][nSmallest];
    for (int i = 0; i < 3; ++i) {
        h[0][i] = h[0][i] / first.Scale() + first.fX * h[2][i];
        h[1][i] = h[1][i] / first.Scale() + first.fY * h[2][i];
    }
    for (auto& row : h) {
        row[2] -= (row[0] * second.fX + row[1] * second.fY) * second.Scale();
        row[0] *= second.Scale();
        row[1] *= second.Scale();
    }
    for (int i = 0; i < 9; ++i) vResult[static_cast<size_t>(i)] = static_cast<double>(h[i / 3][i % 3] / h[2][2]);
    return vResult;
}

TEST(SolveHomography, GivesTheLeastSquaresOfTheNormalisedEquations)
{
    std::mt19937 rng(43);
    for (int n : {4, 5, 7, 30, 500}) {
        SCOPED_TRACE(n);
        const Points points = RandomPoints(rng, n, 6.0f);
        const std::vector<double> vWant = SlowHomography(points);
        CMatrix got;
        ASSERT_TRUE(SolveHomography(points.vFirst.data(), points.vSecond.data(), n, got));
        for (int i = 0; i < 9; ++i) {
            const double fWant = vWant[static_cast<size_t>(i)];
            EXPECT_NEAR(fWant, got.At(i / 3, i % 3), 1e-8 * std::fabs(fWant) + 1e-12) << i;
        }
        EXPECT_EQ(1.0, got.At(2, 2));
    }
}

TEST(SolveHomography, TakesTheSecondPointsToTheFirst)
{
    std::mt19937 rng(44);
    for (int n : {4, 20}) {
        const Points points = RandomPoints(rng, n, 0.0f);
        CMatrix got;
        ASSERT_TRUE(SolveHomography(points.vFirst.data(), points.vSecond.data(), n, got));
        for (int i = 0; i < n; ++i) {
            const PointF image = Project(&got.At(0, 0), points.vSecond[static_cast<size_t>(i)]);
            EXPECT_NEAR(points.vFirst[static_cast<size_t>(i)].x, image.x, 1e-3);
            EXPECT_NEAR(points.vFirst[static_cast<size_t>(i)].y, image.y, 1e-3);
        }
    }
}

TEST(SolveHomography, GivesTheSameBitsFromAUsedWorkspace)
{
    std::mt19937 rng(45);
    HomographyWorkspace workspace;
    ASSERT_TRUE(workspace.Reserve(60));
    for (int n : {60, 4, 33}) {
        const Points points = RandomPoints(rng, n, 2.0f);
        CMatrix want, got;
        ASSERT_TRUE(SolveHomography(points.vFirst.data(), points.vSecond.data(), n, want));
        ASSERT_TRUE(SolveHomography(points.vFirst.data(), points.vSecond.data(), n, got, workspace));
        for (int i = 0; i < 9; ++i) EXPECT_EQ(want.At(i / 3, i % 3), got.At(i / 3, i % 3));
    }
}

TEST(SolveHomography, LeavesTheResultAloneWhenItCannotStart)
{
    std::mt19937 rng(46);
    const Points points = RandomPoints(rng, 9, 0.0f);
    CMatrix untouched(2, 1);
    untouched.At(1, 0) = 5.0;
    HomographyWorkspace small;
    ASSERT_TRUE(small.Reserve(8));
    EXPECT_FALSE(SolveHomography(points.vFirst.data(), points.vSecond.data(), 9, untouched, small));
    for (int n : {3, 0, -1}) {
        EXPECT_FALSE(SolveHomography(points.vFirst.data(), points.vSecond.data(), n, untouched));
    }
    EXPECT_FALSE(small.Reserve(-1));
    EXPECT_EQ(2, untouched.Rows());
    EXPECT_EQ(5.0, untouched.At(1, 0));
}

TEST(SolveHomography, EndsOnDegeneratePoints)
{
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    std::vector<std::vector<PointF>> vSets = {std::vector<PointF>(6, PointF{3.0f, -4.0f}),
                                              std::vector<PointF>(6, PointF{kNaN, 1.0f}),
                                              {{0, 1}, {2, -2}, {4, -5}, {6, -8}, {8, -11}, {10, -14}},
                                              {{0, 0}, {9, 0}, {9, 9}, {0, 9}, {4, 4}, {2, 7}}};
    for (const auto& vFirst : vSets) {
        for (const auto& vSecond : vSets) {
            CMatrix got;
            EXPECT_TRUE(SolveHomography(vFirst.data(), vSecond.data(), 6, got));
            EXPECT_EQ(3, got.Rows());
        }
    }
    CMatrix zeros;  // equal first points: their normalisation has no inverse
    ASSERT_TRUE(SolveHomography(vSets[0].data(), vSets[3].data(), 6, zeros));
    for (int i = 0; i < 9; ++i) EXPECT_EQ(0.0, zeros.At(i / 3, i % 3));
}

}  // namespace
}  // namespace vkr
