#include "weights/normalize_runs.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "weights/normalize_runs.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include "primitives/quotient-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

// One share of 128 for each of three exposures.
template <class V>
struct Shares {
    V w0, w1, w2;
};

// An exposure's index and its share, per lane.
template <class V>
struct LanePick {
    V index, weight;
};

// The two largest. Never default-constructed: GCC gives such a constructor no instruction set.
template <class V>
struct LanePicks {
    LanePick<V> first, second;
};

template <class M, class V>
HWY_INLINE LanePick<V> Either(M mask, const LanePick<V>& yes, const LanePick<V>& no)
{
    return {hn::IfThenElse(mask, yes.index, no.index), hn::IfThenElse(mask, yes.weight, no.weight)};
}

// Raw weights of 8 bits never exceed their sum, so no share needs cutting to its low byte.
template <class D, class V = hn::Vec<D>>
HWY_INLINE Shares<V> ShareOut(D d, V r0, V r1, V r2)
{
    const V sum = hn::Add(hn::Add(r0, r1), r2);
    const V half = hn::ShiftRight<1>(sum);
    const auto reciprocal = ReciprocalOf(d, sum);
    const auto Share = [&](V raw)
                           HWY_ATTR { return QuotientOf(d, hn::Add(hn::ShiftLeft<7>(raw), half), sum, reciprocal); };
    return {Share(r0), Share(r1), Share(r2)};
}

// The picks after two exposures, then the third: it is compared with the INDEX of the second pick.
template <class D, class V = hn::Vec<D>>
HWY_INLINE LanePicks<V> PickTwo(D d, const Shares<V>& shares)
{
    const LanePick<V> pick0{hn::Zero(d), shares.w0}, pick1{hn::Set(d, 1), shares.w1}, pick2{hn::Set(d, 2), shares.w2};
    const auto secondLeads = hn::Gt(pick1.weight, pick0.weight);
    const LanePick<V> lead = Either(secondLeads, pick1, pick0);
    const LanePick<V> rest = Either(secondLeads, pick0, pick1);
    const auto thirdLeads = hn::Gt(pick2.weight, lead.weight);
    return {Either(thirdLeads, pick2, lead),
            Either(thirdLeads, lead, Either(hn::Gt(pick2.weight, rest.index), pick2, rest))};
}

// The weights of the lanes of d from x on.
template <class D>
HWY_INLINE void NormalizeLanes(D d, const uint8_t* const* vRaw, uint8_t* const* vOut, int x, int nDominateWTh,
                               bool bMax2)
{
    using V = hn::Vec<D>;
    const hn::Rebind<uint8_t, D> d8;
    const auto Load = [&](int k) HWY_ATTR { return hn::PromoteTo(d, hn::LoadU(d8, vRaw[k] + x)); };
    const V full = hn::Set(d, 128);
    Shares<V> out = ShareOut(d, Load(0), Load(1), Load(2));
    const LanePicks<V> picks = PickTwo(d, out);
    const LanePick<V>&first = picks.first, &second = picks.second;

    V firstOut;
    if (bMax2) {
        const V pair = hn::Add(first.weight, second.weight);
        const V share = QuotientOf(d, hn::Add(hn::ShiftLeft<7>(second.weight), hn::ShiftRight<1>(pair)), pair,
                                   ReciprocalOf(d, pair));
        firstOut = hn::Sub(full, share);
        const auto Keep = [&](int k)
                              HWY_ATTR { return hn::IfThenElseZero(hn::Eq(second.index, hn::Set(d, k)), share); };
        out = {Keep(0), Keep(1), Keep(2)};
    } else {
        const V others = hn::Sub(hn::Add(hn::Add(out.w0, out.w1), out.w2), first.weight);
        firstOut = hn::Sub(full, hn::Min(others, hn::Set(d, kMostOfOthers)));
    }
    const auto dominates = hn::Gt(first.weight, hn::Set(d, nDominateWTh));
    firstOut = hn::IfThenElse(dominates, full, firstOut);
    const auto Store = [&](int k, V weight) HWY_ATTR {
        const V other = hn::IfThenZeroElse(dominates, weight);
        hn::StoreU(hn::DemoteTo(d8, hn::IfThenElse(hn::Eq(first.index, hn::Set(d, k)), firstOut, other)), d8,
                   vOut[k] + x);
    };
    Store(0, out.w0);
    Store(1, out.w1);
    Store(2, out.w2);
}

void NormalizeThree(const uint8_t* const* vRaw, uint8_t* const* vOut, int nCount, int nDominateWTh, bool bMax2)
{
    const hn::ScalableTag<int32_t> d;
    const hn::CappedTag<int32_t, 1> dOne;
    const int nLanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + nLanes <= nCount; x += nLanes) NormalizeLanes(d, vRaw, vOut, x, nDominateWTh, bMax2);
    for (; x < nCount; ++x) NormalizeLanes(dOne, vRaw, vOut, x, nDominateWTh, bMax2);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

HWY_EXPORT(NormalizeThree);

void NormalizeThreeRun(const uint8_t* const* vRaw, uint8_t* pWeights, int nCount, int nDominateWTh, bool bMax2)
{
    uint8_t vOut[3][kRunPixels];
    uint8_t* const vPlanes[3] = {vOut[0], vOut[1], vOut[2]};
    HWY_DYNAMIC_DISPATCH(NormalizeThree)(vRaw, vPlanes, nCount, nDominateWTh, bMax2);
    JoinPixelRow(vPlanes, pWeights, nCount);
}

}  // namespace vkr
#endif
