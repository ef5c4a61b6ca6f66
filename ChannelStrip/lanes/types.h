// The types of lanes: W numbers side by side in one register, or in several where registers are
// narrower, and the joining and halving of registers.

#pragma once

#include <stdint.h>

#if defined(__AVX__) || defined(__FMA__)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#elif defined(__wasm_simd128__)
#include <wasm_simd128.h>
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

// The halves of a register, and two registers joined to one of twice the width. Where eight lanes
// take two registers, GCC would shuffle them one by one, and compare and select them so.
#if defined(__AVX__)
CHANNELSTRIP_INLINE Lanes<4> low_half(Lanes<8> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3);
}
CHANNELSTRIP_INLINE Lanes<4> high_half(Lanes<8> x) {
  return __builtin_shufflevector(x, x, 4, 5, 6, 7);
}
CHANNELSTRIP_INLINE Lanes<8> join(Lanes<4> low, Lanes<4> high) {
  return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
}
#else
template <typename T>
CHANNELSTRIP_INLINE auto half_of(T x, int which) {
  typedef __typeof__(x[0]) Half __attribute__((vector_size(sizeof(T) / 2)));
  Half halves[2];
  __builtin_memcpy(halves, &x, sizeof x);
  return halves[which];
}
template <typename T, typename Half>
CHANNELSTRIP_INLINE T joined(Half low, Half high) {
  const Half halves[2] = {low, high};
  T x;
  __builtin_memcpy(&x, halves, sizeof x);
  return x;
}
CHANNELSTRIP_INLINE Lanes<4> low_half(Lanes<8> x) {
  return half_of(x, 0);
}
CHANNELSTRIP_INLINE Lanes<4> high_half(Lanes<8> x) {
  return half_of(x, 1);
}
CHANNELSTRIP_INLINE Lanes<8> join(Lanes<4> low, Lanes<4> high) {
  return joined<Lanes<8>>(low, high);
}
#endif
CHANNELSTRIP_INLINE Lanes<8> low_half(Lanes<16> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3, 4, 5, 6, 7);
}
CHANNELSTRIP_INLINE Lanes<8> high_half(Lanes<16> x) {
  return __builtin_shufflevector(x, x, 8, 9, 10, 11, 12, 13, 14, 15);
}
CHANNELSTRIP_INLINE Lanes<16> join(Lanes<8> low, Lanes<8> high) {
  return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
}

}  // namespace channelstrip
