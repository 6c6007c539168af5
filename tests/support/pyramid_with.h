#pragma once

#include "primitives/pyramid_levels.h"

namespace vkr {

inline PyramidParams PyramidWith(int nTopLevel, int bFilter = 0, int bDither = 0)
{
    PyramidParams params;
    params.nTopLevel = nTopLevel;
    params.bPyramidFilter = bFilter;
    params.bUpScaleImageDither = params.bDownScaleImageDither = bDither;
    params.bUpScaleOtherDither = params.bDownScaleOtherDither = bDither;
    return params;
}

}  // namespace vkr
