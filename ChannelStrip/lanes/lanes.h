// Lanes<W>: W floats side by side in one register, or in several where registers are narrower.
//
// The compilers' vector types have arithmetic and comparisons; a comparison gives a mask with all
// bits of a lane set or clear. This header adds the operations they lack, each for a plain float as
// well, so that every rule of the strip is written once, for a V that is float or Lanes<W>. No
// file outside this folder uses intrinsics.

#pragma once

#include "fused_lanes.h"

namespace channelstrip {

// One lane of floats, integers or a mask; of a plain value, the value itself.
template <typename T>
CHANNELSTRIP_INLINE auto lane_of(T x, int lane) {
  if constexpr (sizeof(T) <= 4)
    return x;
  else
    return x[lane];
}

// `a` where the mask is set, otherwise `b`; for floats, integers or masks.
template <typename T>
CHANNELSTRIP_INLINE T select(bool mask, T a, T b) {
  return mask ? a : b;
}
template <typename M, typename T>
CHANNELSTRIP_INLINE T select(M mask, T a, T b) {
#if defined(__AVX__)
  if constexpr (sizeof(T) == 16) return (T)_mm_blendv_ps((__m128)b, (__m128)a, (__m128)mask);
  if constexpr (sizeof(T) == 32) {
    return (T)_mm256_blendv_ps((__m256)b, (__m256)a, (__m256)mask);
  }
#else
  if constexpr (sizeof(T) > 4 * kLanes) {
    return joined<T>(select(half_of(mask, 0), half_of(a, 0), half_of(b, 0)),
                     select(half_of(mask, 1), half_of(a, 1), half_of(b, 1)));
  }
#endif
  // GCC 12 would select between masks of 512 bits lane by lane.
  if constexpr (sizeof(T) == 64 && !__is_same(T, Lanes<16>)) {
    return (T)((mask & (M)a) | (~mask & (M)b));
  }
  return mask ? a : b;
}

// Whether any bit of any lane is set.
template <typename Ints>
CHANNELSTRIP_INLINE bool any_bit(Ints x) {
  int64_t words[sizeof x / 8];
  __builtin_memcpy(words, &x, sizeof x);
  int64_t bits = 0;
  for (int64_t word : words) bits |= word;
  return bits != 0;
}

// The same numbers in another type, lane by lane.
template <typename To, typename From>
CHANNELSTRIP_INLINE To convert(From x) {
  if constexpr (sizeof(From) <= sizeof(double)) {
    return static_cast<To>(x);
  } else {
    return __builtin_convertvector(x, To);
  }
}

CHANNELSTRIP_INLINE float magnitude(float x) {
  return __builtin_fabsf(x);
}
template <typename V>
CHANNELSTRIP_INLINE V magnitude(V x) {
  return (V)((IntsOf<V>)x & 0x7FFFFFFF);
}

// The running maximum of every meter and readout: keeps what is held unless the value is strictly
// greater. So a NaN never enters, and one that is held stays until the host resets it. The
// intrinsics return their second operand for NaN and for equal zeros, as the comparison does.
CHANNELSTRIP_INLINE float maximum(float held, float value) {
  return value > held ? value : held;
}
template <typename V>
CHANNELSTRIP_INLINE V maximum(V held, V value) {
#if defined(CHANNELSTRIP_AVX512)
  if constexpr (kWidth<V> == 16) return _mm512_maskz_max_ps(0xFFFF, value, held);
#endif
#if defined(__AVX__)
  if constexpr (kWidth<V> == 8) return _mm256_max_ps(value, held);
  if constexpr (kWidth<V> == 4) return _mm_max_ps(value, held);
#else
  if constexpr (kLanes < kWidth<V>) {
    return joined<V>(maximum(half_of(held, 0), half_of(value, 0)),
                     maximum(half_of(held, 1), half_of(value, 1)));
  }
#endif
  return value > held ? value : held;
}

// The running minimum, likewise.
template <typename V>
CHANNELSTRIP_INLINE V minimum(V held, V value) {
#if defined(CHANNELSTRIP_AVX512)
  if constexpr (kWidth<V> == 16) return _mm512_maskz_min_ps(0xFFFF, value, held);
#endif
#if defined(__AVX__)
  if constexpr (kWidth<V> == 8) return _mm256_min_ps(value, held);
  if constexpr (kWidth<V> == 4) return _mm_min_ps(value, held);
#else
  if constexpr (kLanes < kWidth<V>) {
    return joined<V>(minimum(half_of(held, 0), half_of(value, 0)),
                     minimum(half_of(held, 1), half_of(value, 1)));
  }
#endif
  return value < held ? value : held;
}

}  // namespace channelstrip
