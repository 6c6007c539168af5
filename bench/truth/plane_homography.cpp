#include "truth/plane_homography.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vkr::truth {

namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

double Distance(Point a, Point b)
{
    const double f = std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
    return std::isfinite(f) ? f : kInfinite;
}

}  // namespace

Point Homography::Apply(Point point) const
{
    const double z = v[6] * point.x + v[7] * point.y + v[8];
    if (!(z > 0)) return {kInfinite, kInfinite};
    return {(v[0] * point.x + v[1] * point.y + v[2]) / z, (v[3] * point.x + v[4] * point.y + v[5]) / z};
}

Homography operator*(const Homography& a, const Homography& b)
{
    Homography product;
    for (int i = 0; i < 9; ++i) {
        const int r = i / 3 * 3, c = i % 3;
        product.v[i] = a.v[r] * b.v[c] + a.v[r + 1] * b.v[c + 3] + a.v[r + 2] * b.v[c + 6];
    }
    return product;
}

Homography Inverse(const Homography& homography)
{
    const double* m = homography.v;
    Homography adjugate{{m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
                         m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
                         m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]}};
    const double fDeterminant = m[0] * adjugate.v[0] + m[1] * adjugate.v[3] + m[2] * adjugate.v[6];
    for (double& f : adjugate.v) f /= fDeterminant;
    return adjugate;
}

Homography Translation(double x, double y)
{
    return {{1, 0, x, 0, 1, y, 0, 0, 1}};
}

Homography FromCentred(const Homography& centred, double x, double y)
{
    return Translation(x, y) * centred * Translation(-x, -y);
}

void ChainPairs(const Homography* vPairs, int nExposures, int nReference, Homography* vToReference)
{
    vToReference[nReference] = {};
    for (int k = nReference - 1; k >= 0; --k) vToReference[k] = vToReference[k + 1] * Inverse(vPairs[k]);
    for (int k = nReference; k + 1 < nExposures; ++k) vToReference[k + 1] = vToReference[k] * vPairs[k];
}

double CornerError(const Homography& estimate, const Homography& truth, int w, int h)
{
    double fLargest = 0;
    for (int i = 0; i < 4; ++i) {
        const Point corner{i % 2 == 0 ? 0.0 : w - 1.0, i / 2 == 0 ? 0.0 : h - 1.0};
        fLargest = std::max(fLargest, Distance(estimate.Apply(corner), truth.Apply(corner)));
    }
    return fLargest;
}

}  // namespace vkr::truth
