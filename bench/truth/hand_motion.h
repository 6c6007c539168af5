#pragma once

#include "truth/plane_homography.h"
#include "truth/truth_random.h"

namespace vkr::truth {

// How a hand moves the camera from the reference to another exposure, frame pixels to reference pixels: a shift of up
// to 60 pixels at a width of 4000 and in proportion at others, a turn of up to 2 degrees, and a perspective that moves
// the picture's sides by up to 0.4 % of their distance from the centre. The sum stays within kReach of the width.
Homography HandMotion(int w, int h, TruthRandom& random);

constexpr double kReach = 0.05;

}  // namespace vkr::truth
