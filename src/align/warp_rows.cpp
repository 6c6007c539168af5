#include "align/warp_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "align/warp_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include "align/warp_run-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// Products and sums apart, as the scalar form rounds them. The result lies between the four samples, so that the
// demotion never saturates.
template <int nDim>
HWY_INLINE void BlendRun(const WarpRun& run, float fx, float fy, uint8_t* pDst)
{
    const hn::CappedTag<float, kRun> df;
    const hn::Rebind<int32_t, decltype(df)> di;
    const hn::Rebind<uint8_t, decltype(df)> d8;
    const auto x = hn::Set(df, fx), y = hn::Set(df, fy);
    const auto Load = [&](const uint8_t* p) HWY_ATTR { return hn::ConvertTo(df, hn::PromoteTo(di, hn::LoadU(d8, p))); };
    const auto Across = [&](const uint8_t* p) HWY_ATTR {
        const auto near = Load(p);
        return hn::Add(near, hn::Mul(x, hn::Sub(Load(p + nDim), near)));
    };
    for (int i = 0; i < kRun; i += static_cast<int>(hn::Lanes(df))) {
        const auto top = Across(run.pTop + i), bottom = Across(run.pBottom + i);
        const auto out = hn::Add(top, hn::Mul(y, hn::Sub(bottom, top)));
        hn::StoreU(hn::DemoteTo(d8, hn::ConvertTo(di, out)), d8, pDst + i);
    }
}

template <int nDim>
HWY_INLINE void WarpCellRowOf(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    WarpTiles<nDim>(src, pNodes, nCellRow, pDst, [](const WarpRun& run, float fx, float fy, uint8_t* pOut) HWY_ATTR {
        BlendRun<nDim>(run, fx, fy, pOut);
    });
}

void WarpCellRowSimd(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    if (src.nDim == 1) return WarpCellRowOf<1>(src, pNodes, nCellRow, pDst);
    WarpCellRowOf<2>(src, pNodes, nCellRow, pDst);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

namespace {

float Between(float fFrom, float fTo, float fPart)
{
    return fFrom + fPart * (fTo - fFrom);
}

template <int nDim>
void WarpCellRowScalarOf(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    using HWY_NAMESPACE::WarpRun;
    HWY_NAMESPACE::WarpTiles<nDim>(src, pNodes, nCellRow, pDst,
                                   [](const WarpRun& run, float fx, float fy, uint8_t* pOut) {
                                       for (int i = 0; i < HWY_NAMESPACE::kRun; ++i) {
                                           const float fTop = Between(run.pTop[i], run.pTop[i + nDim], fx);
                                           const float fBottom = Between(run.pBottom[i], run.pBottom[i + nDim], fx);
                                           pOut[i] = static_cast<uint8_t>(Between(fTop, fBottom, fy));
                                       }
                                   });
}

}  // namespace

void WarpCellRowScalar(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    if (src.nDim == 1) return WarpCellRowScalarOf<1>(src, pNodes, nCellRow, pDst);
    WarpCellRowScalarOf<2>(src, pNodes, nCellRow, pDst);
}

HWY_EXPORT(WarpCellRowSimd);

void WarpCellRow(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    HWY_DYNAMIC_DISPATCH(WarpCellRowSimd)(src, pNodes, nCellRow, pDst);
}

}  // namespace vkr
#endif
