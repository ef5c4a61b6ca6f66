// Doubles side by side, and the conversions between them and as many floats.

#pragma once

#include "types.h"

namespace channelstrip {

template <int W>
struct DoubleTypes {
  typedef double Doubles __attribute__((vector_size(8 * W)));
  typedef int64_t Longs __attribute__((vector_size(8 * W)));
};
template <>
struct DoubleTypes<1> {
  using Doubles = double;
  using Longs = int64_t;
};
template <typename V>
using DoublesOf = typename DoubleTypes<kWidth<V>>::Doubles;
template <typename V>
using LongsOf = typename DoubleTypes<kWidth<V>>::Longs;

// How many doubles go side by side: as many as a register holds, but at least four.
#if defined(CHANNELSTRIP_AVX512)
constexpr int kDoubles = 8;
#else
constexpr int kDoubles = 4;
#endif

// Four doubles, and integers of the same width.
using Doubles = DoubleTypes<4>::Doubles;
using Longs = DoubleTypes<4>::Longs;

// Two doubles, the width of the narrowest registers.
using DoublePair = DoubleTypes<2>::Doubles;

// Lanes 0 and 1, or 2 and 3, as doubles, and two such pairs rounded to floats.
CHANNELSTRIP_INLINE DoublePair widened_low(Lanes<4> x) {
#if defined(__SSE2__)
  return (DoublePair)_mm_cvtps_pd(x);
#else
  return __builtin_convertvector(__builtin_shufflevector(x, x, 0, 1), DoublePair);
#endif
}
CHANNELSTRIP_INLINE DoublePair widened_high(Lanes<4> x) {
  return widened_low(__builtin_shufflevector(x, x, 2, 3, 2, 3));
}
CHANNELSTRIP_INLINE Lanes<4> narrowed_pairs(DoublePair low, DoublePair high) {
#if defined(__SSE2__)
  return _mm_movelh_ps(_mm_cvtpd_ps(low), _mm_cvtpd_ps(high));
#else
  typedef float Two __attribute__((vector_size(8)));
  return __builtin_shufflevector(__builtin_convertvector(low, Two),
                                 __builtin_convertvector(high, Two), 0, 1, 2, 3);
#endif
}

// The same numbers as doubles. GCC converts vectors in halves, by way of memory.
template <typename V>
CHANNELSTRIP_INLINE DoublesOf<V> widened(V x) {
  if constexpr (kWidth<V> == 1) {
    return static_cast<double>(x);
  } else {
#if defined(CHANNELSTRIP_AVX512)
    if constexpr (kWidth<V> == 8) return (DoublesOf<V>)_mm512_maskz_cvtps_pd(0xFF, x);
#endif
#if defined(__AVX__)
    if constexpr (kWidth<V> == 4) return (DoublesOf<V>)_mm256_cvtps_pd(x);
#endif
    return __builtin_convertvector(x, DoublesOf<V>);
  }
}

// The same numbers rounded to floats.
template <typename V>
CHANNELSTRIP_INLINE V narrowed(DoublesOf<V> x) {
  if constexpr (kWidth<V> == 1) {
    return static_cast<float>(x);
  } else {
#if defined(CHANNELSTRIP_AVX512)
    if constexpr (kWidth<V> == 8) return (V)_mm512_maskz_cvtpd_ps(0xFF, x);
#endif
#if defined(__AVX__)
    if constexpr (kWidth<V> == 4) return (V)_mm256_cvtpd_ps(x);
#endif
    return __builtin_convertvector(x, V);
  }
}

}  // namespace channelstrip
