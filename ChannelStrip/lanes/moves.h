// Loads, stores and transposition of vectors.

#pragma once

#include "lanes.h"

namespace channelstrip {

// Unaligned loads and stores.
template <typename V>
CHANNELSTRIP_INLINE V load(const void* from) {
  V x;
  __builtin_memcpy(&x, from, sizeof x);
  return x;
}
template <typename V>
CHANNELSTRIP_INLINE void store(void* to, V x) {
  __builtin_memcpy(to, &x, sizeof x);
}

// Lanes A to D of every block of four lanes; from 4 on they are those of b's block.
template <int A, int B, int C, int D, typename V>
CHANNELSTRIP_INLINE V shuffle_blocks(V a, V b) {
  constexpr int kW = kWidth<V>;
  constexpr auto at = [](int block, int i) { return 4 * block + (i < 4 ? i : i - 4 + kW); };
#define CHANNELSTRIP_BLOCK(i) at(i, A), at(i, B), at(i, C), at(i, D)
  if constexpr (kW == 4) return __builtin_shufflevector(a, b, CHANNELSTRIP_BLOCK(0));
  if constexpr (kW == 8) {
    return __builtin_shufflevector(a, b, CHANNELSTRIP_BLOCK(0), CHANNELSTRIP_BLOCK(1));
  }
  if constexpr (kW == 16) {
    return __builtin_shufflevector(a, b, CHANNELSTRIP_BLOCK(0), CHANNELSTRIP_BLOCK(1),
                                   CHANNELSTRIP_BLOCK(2), CHANNELSTRIP_BLOCK(3));
  }
#undef CHANNELSTRIP_BLOCK
}

// Four vectors: in every block of four lanes, rows become columns.
template <typename V>
CHANNELSTRIP_INLINE void transpose(V (&m)[4]) {
  const V a = shuffle_blocks<0, 4, 1, 5>(m[0], m[1]);
  const V b = shuffle_blocks<0, 4, 1, 5>(m[2], m[3]);
  const V c = shuffle_blocks<2, 6, 3, 7>(m[0], m[1]);
  const V d = shuffle_blocks<2, 6, 3, 7>(m[2], m[3]);
  m[0] = shuffle_blocks<0, 1, 4, 5>(a, b);
  m[1] = shuffle_blocks<2, 3, 6, 7>(a, b);
  m[2] = shuffle_blocks<0, 1, 4, 5>(c, d);
  m[3] = shuffle_blocks<2, 3, 6, 7>(c, d);
}

CHANNELSTRIP_INLINE Lanes<8> extended(Lanes<4> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3, -1, -1, -1, -1);
}
CHANNELSTRIP_INLINE Lanes<16> extended(Lanes<8> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3, 4, 5, 6, 7, -1, -1, -1, -1, -1, -1, -1, -1);
}

// The first lanes of a register, and a register with `x` in its first lanes; what the others hold
// is of no account.
template <typename To, typename From>
CHANNELSTRIP_INLINE To resized(From x) {
  if constexpr (kWidth<To> == kWidth<From>) return x;
  if constexpr (kWidth < To >> kWidth<From>) return resized<To>(extended(x));
  if constexpr (kWidth<To> < kWidth<From>) return resized<To>(low_half(x));
}

// to[i] = from[index[i]]. `index` holds as many numbers as the wider of the two types has lanes.
template <typename To, typename From>
CHANNELSTRIP_INLINE To pick_lanes(From from, const int32_t* index) {
#if defined(__AVX2__)
  using Wide = Lanes<(kWidth<To> > kWidth<From> ? kWidth<To> : kWidth<From>)>;
  const Wide wide = resized<Wide>(from);
  const auto at = load<IntsOf<Wide>>(index);
  if constexpr (kWidth<Wide> == 4) return _mm_permutevar_ps(wide, (__m128i)at);
  if constexpr (kWidth<Wide> == 8) {
    return resized<To>(Wide(_mm256_permutevar8x32_ps(wide, (__m256i)at)));
  }
#if defined(CHANNELSTRIP_AVX512)
  if constexpr (kWidth<Wide> == 16) {
    return resized<To>(Wide(_mm512_maskz_permutexvar_ps(0xFFFF, (__m512i)at, wide)));
  }
#endif
#endif
  To picked;
  for (int i = 0; i < kWidth<To>; ++i) picked[i] = from[index[i]];
  return picked;
}

#if defined(CHANNELSTRIP_AVX512)
// table[index] of every lane, from a table of 16 or 32 numbers that stands in registers. Only the
// low four or five bits of an index count.
template <typename V>
CHANNELSTRIP_INLINE V entry_of_16(const void* table, IntsOf<V> index) {
  const auto half = [=](int i) { return load<V>(static_cast<const float*>(table) + 8 * i); };
  if constexpr (kWidth<V> == 8) {
    return _mm256_permutex2var_ps(half(0), (__m256i)index, half(1));
  }
  if constexpr (kWidth<V> == 16) {
    return _mm512_maskz_permutexvar_ps(0xFFFF, (__m512i)index, half(0));
  }
}
template <typename V>
CHANNELSTRIP_INLINE V entry_of_32(const void* table, IntsOf<V> index) {
  const auto half = [=](int i) { return static_cast<const float*>(table) + 16 * i; };
  if constexpr (kWidth<V> == 8) {
    return select((index & 16) != 0, entry_of_16<V>(half(1), index),
                  entry_of_16<V>(half(0), index));
  }
  if constexpr (kWidth<V> == 16) {
    return _mm512_permutex2var_ps(load<V>(half(0)), (__m512i)index, load<V>(half(1)));
  }
}
#endif

}  // namespace channelstrip
