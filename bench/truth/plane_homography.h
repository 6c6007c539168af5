#pragma once

namespace vkr::truth {

struct Point {
    double x, y;
};

// Row-major, takes pixels of one picture to pixels of another; pixel (0, 0) is the centre of the first sample.
struct Homography {
    double v[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};

    // Infinite for a point on or behind the horizon.
    Point Apply(Point point) const;
};

Homography operator*(const Homography& a, const Homography& b);

// Not normalised. A singular one gives an inverse whose points are all infinite.
Homography Inverse(const Homography& homography);

Homography Translation(double x, double y);

// The same motion with the origin moved from the picture's centre (x, y) to its first pixel.
Homography FromCentred(const Homography& centred, double x, double y);

// vToReference[k] takes points of exposure k to points of exposure nReference; vPairs[k] takes those of k + 1 to those
// of k.
void ChainPairs(const Homography* vPairs, int nExposures, int nReference, Homography* vToReference);

// The largest distance, over the four corner pixels of a w x h picture, between where estimate and truth take them.
// Infinite where the estimate is not finite.
double CornerError(const Homography& estimate, const Homography& truth, int w, int h);

}  // namespace vkr::truth
