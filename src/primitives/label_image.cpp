#include "primitives/label_image.h"

#include <limits>

#include "foundation/mem_pool.h"

namespace vkr {

bool CLabelImage::Allocate(int w, int h)
{
    const bool bSize = w >= 0 && h >= 0;
    const uint64_t nNeeded = bSize ? static_cast<uint64_t>(w) * static_cast<uint64_t>(h) * sizeof(int32_t) : 0;
    const bool bFits = bSize && nNeeded <= std::numeric_limits<uint32_t>::max();
    if (!bFits || pData == nullptr || nNeeded > nCapacity) {
        Release();
        if (!bFits) return false;
        pData = static_cast<int32_t*>(PoolAlloc(static_cast<size_t>(nNeeded)));
        if (pData == nullptr) return false;
        nCapacity = static_cast<uint32_t>(nNeeded);
    }
    nWidth = w;
    nHeight = h;
    return true;
}

void CLabelImage::Release()
{
    PoolFree(pData);
    *this = CLabelImage{};
}

}  // namespace vkr
