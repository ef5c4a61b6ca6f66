// Doubles side by side, and the conversions between them and as many floats.

#pragma once

#include "lanes.h"

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

// Four doubles, and integers of the same width.
using Doubles = DoubleTypes<4>::Doubles;
using Longs = DoubleTypes<4>::Longs;

// The same numbers as doubles. GCC converts vectors in halves, by way of memory.
template <typename V>
CHANNELSTRIP_INLINE DoublesOf<V> widened(V x) {
  if constexpr (kWidth<V> == 1) {
    return static_cast<double>(x);
  } else {
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
#if defined(__AVX__)
    if constexpr (kWidth<V> == 4) return (V)_mm256_cvtpd_ps(x);
#endif
    return __builtin_convertvector(x, V);
  }
}

}  // namespace channelstrip
