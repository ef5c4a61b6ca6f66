// Lanes<W>: W floats side by side in one register, or in several where registers are narrower.
//
// The compilers' vector types have arithmetic and comparisons; a comparison gives a mask with all
// bits of a lane set or clear. This header adds the operations they lack, each for a plain float as
// well, so that every rule of the strip is written once, for a V that is float or Lanes<W>. No
// other file uses intrinsics.

#pragma once

#include <stdint.h>

#include "fused.h"

#if defined(__AVX__) || defined(__FMA__)
#include <immintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace channelstrip {

#define CHANNELSTRIP_INLINE inline __attribute__((always_inline))

// For what is used often: unoptimised, every inlined copy takes stack of its own.
#if defined(__OPTIMIZE__)
#define CHANNELSTRIP_INLINE_OPTIMISED CHANNELSTRIP_INLINE
#else
#define CHANNELSTRIP_INLINE_OPTIMISED inline
#endif

// Floats per vector register, for which the work is laid out.
#if defined(__AVX512VL__) && defined(__AVX512DQ__)
#define CHANNELSTRIP_AVX512
constexpr int kLanes = 16;
#elif defined(__AVX__)
constexpr int kLanes = 8;
#else
constexpr int kLanes = 4;
#endif

constexpr int power_of_two_from(int n) {
  return n <= 1 ? 1 : 2 * power_of_two_from((n + 1) / 2);
}

template <int W>
struct LaneTypes {
  typedef float Floats __attribute__((vector_size(4 * W)));
  typedef int32_t Ints __attribute__((vector_size(4 * W)));
  typedef uint32_t Words __attribute__((vector_size(4 * W)));
  using Mask = Ints;
};
template <>
struct LaneTypes<1> {
  using Floats = float;
  using Ints = int32_t;
  using Words = uint32_t;
  using Mask = bool;
};

template <int W>
using Lanes = typename LaneTypes<W>::Floats;

template <typename V>
constexpr int kWidth = sizeof(V) / sizeof(float);
template <typename V>
using IntsOf = typename LaneTypes<kWidth<V>>::Ints;
template <typename V>
using WordsOf = typename LaneTypes<kWidth<V>>::Words;
template <typename V>
using MaskOf = typename LaneTypes<kWidth<V>>::Mask;

template <typename V>
CHANNELSTRIP_INLINE V broadcast(float x) {
  if constexpr (kWidth<V> == 16) return V{x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x};
  if constexpr (kWidth<V> == 8) return V{x, x, x, x, x, x, x, x};
  if constexpr (kWidth<V> == 4) return V{x, x, x, x};
  if constexpr (kWidth<V> == 1) return x;
}

// One lane of floats, integers or a mask; of a plain value, the value itself.
template <typename T>
CHANNELSTRIP_INLINE auto lane_of(T x, int lane) {
  if constexpr (sizeof(T) <= 4)
    return x;
  else
    return x[lane];
}

// The halves of a register, and two registers joined to one of twice the width.
CHANNELSTRIP_INLINE Lanes<4> low_half(Lanes<8> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3);
}
CHANNELSTRIP_INLINE Lanes<4> high_half(Lanes<8> x) {
  return __builtin_shufflevector(x, x, 4, 5, 6, 7);
}
CHANNELSTRIP_INLINE Lanes<8> join(Lanes<4> low, Lanes<4> high) {
  return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
}
CHANNELSTRIP_INLINE Lanes<8> low_half(Lanes<16> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3, 4, 5, 6, 7);
}
CHANNELSTRIP_INLINE Lanes<8> high_half(Lanes<16> x) {
  return __builtin_shufflevector(x, x, 8, 9, 10, 11, 12, 13, 14, 15);
}
CHANNELSTRIP_INLINE Lanes<16> join(Lanes<8> low, Lanes<8> high) {
  return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
}

// a b + c, rounded once where the target has a fused multiply-add.
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
#elif defined(__ARM_FEATURE_FMA)
  if constexpr (kWidth<V> == 4) {
    return vfmaq_f32(c, a, b);
  } else {
    return join(fused(low_half(a), low_half(b), low_half(c)),
                fused(high_half(a), high_half(b), high_half(c)));
  }
#else
  return a * b + c;
#endif
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
#endif
  return value < held ? value : held;
}

}  // namespace channelstrip
