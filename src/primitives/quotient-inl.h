// Exact quotients without an integer division. Included by files that are compiled once per instruction set.
#if defined(VKR_FUSION_QUOTIENT_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VKR_FUSION_QUOTIENT_INL_H
#undef VKR_FUSION_QUOTIENT_INL_H
#else
#define VKR_FUSION_QUOTIENT_INL_H
#endif

#include <hwy/highway.h>

#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// About 1 / divisor. Divisors below 1 count as 1: a divisor of 0 only ever meets the dividend 0, whose quotient is 0.
template <class D32, class V>
HWY_INLINE auto ReciprocalOf(D32 d, V divisor)
{
    const hn::RebindToFloat<D32> df;
    return hn::Div(hn::Set(df, 1.0f), hn::ConvertTo(df, hn::Max(divisor, hn::Set(d, 1))));
}

// dividend / divisor for 0 <= dividend < 2^26, a quotient of at most 2^15 and a reciprocal that is off by a factor of
// 1 + 2^-20 at most: the estimate misses the quotient by less than 2^-4 and, truncated, by at most 1. The remainder
// tells by which.
template <class D32, class V, class F>
HWY_INLINE V QuotientOf(D32 d, V dividend, V divisor, F reciprocal)
{
    const hn::RebindToFloat<D32> df;
    const V estimate = hn::ConvertTo(d, hn::Mul(hn::ConvertTo(df, dividend), reciprocal));
    const V rest = hn::Sub(dividend, hn::Mul(estimate, divisor));
    // A mask is -1 in the lanes where it holds. rest > divisor - 1 is rest >= divisor; a divisor of 0 never counts.
    const V tooSmall = hn::VecFromMask(d, hn::Gt(rest, hn::Max(hn::Sub(divisor, hn::Set(d, 1)), hn::Zero(d))));
    const V tooLarge = hn::VecFromMask(d, hn::Lt(rest, hn::Zero(d)));
    return hn::Add(hn::Sub(estimate, tooSmall), tooLarge);
}

// The same for signed dividends, truncated toward zero.
template <class D32, class V, class F>
HWY_INLINE V SignedQuotientOf(D32 d, V dividend, V divisor, F reciprocal)
{
    const V sign = hn::ShiftRight<31>(dividend);  // 0 or -1
    const V quotient = QuotientOf(d, hn::Sub(hn::Xor(dividend, sign), sign), divisor, reciprocal);
    return hn::Sub(hn::Xor(quotient, sign), sign);
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();
#endif
