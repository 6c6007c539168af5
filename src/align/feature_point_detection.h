#pragma once

#include <cstdint>

#include "foundation/filter.h"

namespace vkr {

// Corner points of a grey image pyramid.
class CFeaturePointDetection : public CFilter {
public:
    void SetFilterName() override;
    void RegisterParameters() override;

    int32_t nPtThre1 = 0;
    int32_t nPtThre2 = 0;
    int32_t nThre = 0;
    int32_t nRatio = 0;
    int32_t nHarris_K = 0;
    int32_t nHarrisThre = 0;
};

// The one that alignment runs with. It keeps the name of its base.
class CFeaturePointDetectionOpt : public CFeaturePointDetection {};

}  // namespace vkr
