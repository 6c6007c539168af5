#include "primitives/planar_rows.h"

#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "primitives/planar_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

void SplitThreeRow(const uint8_t* pSrc, uint8_t* const* vPlanes, int nCount)
{
    const hn::ScalableTag<uint8_t> d;
    const int nLanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + nLanes <= nCount; x += nLanes) {
        hn::Vec<decltype(d)> v0, v1, v2;
        hn::LoadInterleaved3(d, pSrc + 3 * x, v0, v1, v2);
        hn::StoreU(v0, d, vPlanes[0] + x);
        hn::StoreU(v1, d, vPlanes[1] + x);
        hn::StoreU(v2, d, vPlanes[2] + x);
    }
    for (; x < nCount; ++x) {
        for (int c = 0; c < 3; ++c) vPlanes[c][x] = pSrc[3 * x + c];
    }
}

template <class T>
void JoinThreeRow(const T* const* vPlanes, T* pDst, int nCount)
{
    const hn::ScalableTag<T> d;
    const int nLanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + nLanes <= nCount; x += nLanes) {
        hn::StoreInterleaved3(hn::LoadU(d, vPlanes[0] + x), hn::LoadU(d, vPlanes[1] + x), hn::LoadU(d, vPlanes[2] + x),
                              d, pDst + 3 * x);
    }
    for (; x < nCount; ++x) {
        for (int c = 0; c < 3; ++c) pDst[3 * x + c] = vPlanes[c][x];
    }
}

void JoinThreeRow8(const uint8_t* const* vPlanes, uint8_t* pDst, int nCount)
{
    JoinThreeRow(vPlanes, pDst, nCount);
}
void JoinThreeRow16(const int16_t* const* vPlanes, int16_t* pDst, int nCount)
{
    JoinThreeRow(vPlanes, pDst, nCount);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(SplitThreeRow);
HWY_EXPORT(JoinThreeRow8);
HWY_EXPORT(JoinThreeRow16);

void SplitPixelRow(const uint8_t* pSrc, uint8_t* const* vPlanes, int nCount, int nDim)
{
    if (nDim == 3) {
        HWY_DYNAMIC_DISPATCH(SplitThreeRow)(pSrc, vPlanes, nCount);
        return;
    }
    SplitPixelRowScalar(pSrc, vPlanes, nCount, nDim);
}

void SplitPixelRowScalar(const uint8_t* pSrc, uint8_t* const* vPlanes, int nCount, int nDim)
{
    for (int c = 0; c < nDim; ++c) {
        uint8_t* pPlane = vPlanes[c];
        for (int x = 0; x < nCount; ++x) pPlane[x] = pSrc[static_cast<size_t>(x) * nDim + c];
    }
}

void JoinPixelRow(const uint8_t* const* vPlanes, uint8_t* pDst, int nCount)
{
    HWY_DYNAMIC_DISPATCH(JoinThreeRow8)(vPlanes, pDst, nCount);
}

void JoinPixelRow(const int16_t* const* vPlanes, int16_t* pDst, int nCount)
{
    HWY_DYNAMIC_DISPATCH(JoinThreeRow16)(vPlanes, pDst, nCount);
}

}  // namespace vkr
#endif
