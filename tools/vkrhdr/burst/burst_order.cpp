#include "burst/burst_order.h"

#include <algorithm>
#include <numeric>

namespace vkr::tool {

namespace {

std::vector<int> SortedBy(const std::vector<FrameLight>& vLight, double FrameLight::*pKey)
{
    std::vector<int> vFrames(vLight.size());
    std::iota(vFrames.begin(), vFrames.end(), 0);
    std::stable_sort(vFrames.begin(), vFrames.end(), [&](int a, int b) { return vLight[a].*pKey < vLight[b].*pKey; });
    return vFrames;
}

bool IsStrict(const std::vector<FrameLight>& vLight, const std::vector<int>& vFrames)
{
    double fBefore = 0;
    for (const int i : vFrames) {
        if (vLight[i].fExposure <= fBefore * 1.01) return false;
        fBefore = vLight[i].fExposure;
    }
    return true;
}

}  // namespace

BurstOrder OrderBurst(const std::vector<FrameLight>& vLight)
{
    BurstOrder order{SortedBy(vLight, &FrameLight::fExposure), true};
    if (IsStrict(vLight, order.vFrames)) return order;
    return {SortedBy(vLight, &FrameLight::fMeanLuma), false};
}

}  // namespace vkr::tool
