#include "warp/warp_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "warp/warp_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>

#include "warp/warp_run-inl.h"

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

// A plane of whole cells, the last column and row repeated, read pixel by pixel.
struct PlainPlane {
    const WarpPlane& src;
    int nWholeWidth, nWholeHeight;  // of the cells

    // Mirrored once at either end, then clamped; what is no number is 0.
    static float Inside(float f, int nSize)
    {
        const float fLast = static_cast<float>(nSize - 1);
        if (std::isnan(f)) return 0;
        f = std::fabs(f);
        if (f > fLast) f = 2 * fLast - f;
        return f > 0 ? f : 0;
    }
    float Sample(int x, int y, int c) const
    {
        if (x >= nWholeWidth) x = 2 * (nWholeWidth - 1) - x;
        const int nAt = std::min(y, src.nHeight - 1) * src.nWidth + std::min(x, src.nWidth - 1);
        return src.pData[nAt * src.nDim + c];
    }
    float Across(int x, int y, int c, float fx) const { return Between(Sample(x, y, c), Sample(x + 1, y, c), fx); }
};

}  // namespace

void WarpCellRowScalar(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    const int nDim = src.nDim, nCell = kWarpCell / nDim, nRun = 8 / nDim;
    const auto Whole = [&](int nSize) { return (nSize + nCell - 1) / nCell * nCell; };
    const PlainPlane plane{src, Whole(src.nWidth), Whole(src.nHeight)};
    const float fDim = static_cast<float>(nDim);
    for (int y = nCellRow * nCell; y < std::min((nCellRow + 1) * nCell, src.nHeight); ++y) {
        for (int x = 0; x < src.nWidth; ++x) {
            const float *pNode = pNodes + 2 * (x / nCell), fInCell = static_cast<float>(x % nCell / nRun * nRun);
            const float fx = PlainPlane::Inside(fInCell + pNode[0] / fDim, plane.nWholeWidth);
            const float fy = PlainPlane::Inside(static_cast<float>(y % nCell) + pNode[1] / fDim, plane.nWholeHeight);
            const int xFrom = static_cast<int>(fx) + x % nRun, yFrom = static_cast<int>(fy);
            for (int c = 0; c < nDim; ++c) {
                const float fTop = plane.Across(xFrom, yFrom, c, fx - std::floor(fx));
                const float fBottom = plane.Across(xFrom, yFrom + 1, c, fx - std::floor(fx));
                pDst[(y * src.nWidth + x) * nDim + c] =
                    static_cast<uint8_t>(Between(fTop, fBottom, fy - std::floor(fy)));
            }
        }
    }
}

HWY_EXPORT(WarpCellRowSimd);

void WarpCellRow(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst)
{
    HWY_DYNAMIC_DISPATCH(WarpCellRowSimd)(src, pNodes, nCellRow, pDst);
}

}  // namespace vkr
#endif
