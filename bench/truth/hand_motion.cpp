#include "truth/hand_motion.h"

namespace vkr::truth {

namespace {

constexpr double kShift = 60.0 / 4000;          // of the width
constexpr double kTanOfHalfTurn = 0.017455065;  // tan(1 degree): a turn by a is (1 - t^2, 2 t) / (1 + t^2)
constexpr double kKeystone = 0.004;             // at the sides

}  // namespace

Homography HandMotion(int w, int h, TruthRandom& random)
{
    double dx = 0, dy = 0;
    random.InDisc(dx, dy);
    const double t = random.Uniform(-kTanOfHalfTurn, kTanOfHalfTurn);
    const double c = (1 - t * t) / (1 + t * t), s = 2 * t / (1 + t * t);
    const double fKeystone = kKeystone / (0.5 * w);
    const double px = random.Uniform(-fKeystone, fKeystone), py = random.Uniform(-fKeystone, fKeystone);
    const Homography aboutCentre = Translation(dx * kShift * w, dy * kShift * w) *
                                   Homography{{c, -s, 0, s, c, 0, 0, 0, 1}} * Homography{{1, 0, 0, 0, 1, 0, px, py, 1}};
    return FromCentred(aboutCentre, 0.5 * w, 0.5 * h);
}

}  // namespace vkr::truth
