#pragma once

#include <string>
#include <vector>

#include "ghosts/relinearize.h"
#include "pictures/picture_io.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// One frame of a burst, darkest first, as far as its light matters.
struct RatioFrame {
    const Frame* pFrame;
    std::string sName;
    double fExposure = 0;  // relative light by EXIF; 0: unknown
};

// How many times as much light each frame got as its next darker one, by pair, Q4, brought into no range; 0 where it
// can not be measured (see MeasureExposureRatio).
//
//   vFrames   of one size
//   vWanted   by pair: false leaves it unmeasured, 0
//   remarks   a line where EXIF differs by more than a stop; it only checks
std::vector<int> MeasureRatios(const std::vector<RatioFrame>& vFrames, const std::vector<bool>& vWanted,
                               const DisplayCurve& curve, Remarks& remarks);

}  // namespace vkr::tool
