// The fused multiply-add in lanes: the bits of fused.h in every lane.

#pragma once

#include "doubles.h"
#include "fused.h"

namespace channelstrip {

#if defined(CHANNELSTRIP_FUSED_BY_DOUBLES)
// product + addend, rounded to odd, in doubles side by side; fused.h says why.
template <int W>
CHANNELSTRIP_INLINE typename DoubleTypes<W>::Doubles sum_to_odd(
    typename DoubleTypes<W>::Doubles product, typename DoubleTypes<W>::Doubles addend) {
  using D = typename DoubleTypes<W>::Doubles;
  using L = typename DoubleTypes<W>::Longs;
  const D sum = product + addend;
  const D added = sum - product;
  const D short_of = ((product - (sum - added)) + (addend - added)) * sum;
  const L beyond = short_of < 0.0, before = 0.0 < short_of;
  return (D)(((L)sum + beyond) | ((beyond | before) & 1));
}
#endif

// a b + c, rounded once.
CHANNELSTRIP_INLINE float fused(float a, float b, float c) {
  return channelstrip_fused(a, b, c);
}
template <typename V>
CHANNELSTRIP_INLINE V fused(V a, V b, V c) {
#if defined(__FMA__)
  if constexpr (kWidth<V> == 4) return _mm_fmadd_ps(a, b, c);
  if constexpr (kWidth<V> == 8) return _mm256_fmadd_ps(a, b, c);
#if defined(CHANNELSTRIP_AVX512)
  if constexpr (kWidth<V> == 16) return _mm512_fmadd_ps(a, b, c);
#endif
#elif defined(CHANNELSTRIP_FUSED_BY_INSTRUCTION) || defined(CHANNELSTRIP_FUSED_BY_DOUBLES)
  if constexpr (4 < kWidth<V>) {
    return join(fused(low_half(a), low_half(b), low_half(c)),
                fused(high_half(a), high_half(b), high_half(c)));
  } else {
#if defined(__ARM_FEATURE_FMA)
    return vfmaq_f32(c, a, b);
#elif defined(CHANNELSTRIP_FUSED_BY_INSTRUCTION)
    return V{fused(a[0], b[0], c[0]), fused(a[1], b[1], c[1]), fused(a[2], b[2], c[2]),
             fused(a[3], b[3], c[3])};
#elif defined(__AVX__)
    return narrowed<V>(sum_to_odd<4>(widened(a) * widened(b), widened(c)));
#else
    return narrowed_pairs(sum_to_odd<2>(widened_low(a) * widened_low(b), widened_low(c)),
                          sum_to_odd<2>(widened_high(a) * widened_high(b), widened_high(c)));
#endif
  }
#else
  return a * b + c;
#endif
}

}  // namespace channelstrip
