#pragma once

#include <cstdint>

namespace vkr {

constexpr int kMaxFeatures = 8192;

// A corner point: pixels of its level, Harris response, index of its partner in the other picture (-1 none).
struct FeaturePoint {
    int32_t x, y;
    float fResponse;
    int32_t nMatch;
};

// Pairs in step: pFirst[i] with pSecond[i], room for kMaxFeatures each, owned by the caller.
struct MatchList {
    FeaturePoint* pFirst;
    FeaturePoint* pSecond;
    int nCount;
};

}  // namespace vkr
