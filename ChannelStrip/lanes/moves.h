// Loads and stores of vectors, vectors of another width, and lanes picked by number.

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

// x in the low half; what the high half holds is of no account.
CHANNELSTRIP_INLINE Lanes<8> extended(Lanes<4> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3, -1, -1, -1, -1);
}
CHANNELSTRIP_INLINE Lanes<16> extended(Lanes<8> x) {
  return __builtin_shufflevector(x, x, 0, 1, 2, 3, 4, 5, 6, 7, -1, -1, -1, -1, -1, -1, -1, -1);
}

// The first lanes of a register, or a register that is extended.
template <typename To, typename From>
CHANNELSTRIP_INLINE To resized(From x) {
  if constexpr (kWidth<To> == kWidth<From>) {
    return x;
  } else if constexpr (kWidth<To> < kWidth<From>) {
    return resized<To>(low_half(x));
  } else {
    return resized<To>(extended(x));
  }
}

#if defined(__aarch64__) || defined(__wasm_simd128__)
#define CHANNELSTRIP_PICKS_BYTES
// Four numbers from the 4 N that stand in the parts, by the numbers of their bytes.
template <int N>
CHANNELSTRIP_INLINE Lanes<4> pick_four(const Lanes<4> (&parts)[N], const int32_t* index) {
  const auto bytes = load<WordsOf<Lanes<4>>>(index) * 0x04040404u + 0x03020100u;
#if defined(__aarch64__)
  const auto at = (uint8x16_t)bytes;
  if constexpr (N == 1) return (Lanes<4>)vqtbl1q_u8((uint8x16_t)parts[0], at);
  if constexpr (N == 2) {
    const uint8x16x2_t table = {{(uint8x16_t)parts[0], (uint8x16_t)parts[1]}};
    return (Lanes<4>)vqtbl2q_u8(table, at);
  }
  if constexpr (N == 4) {
    const uint8x16x4_t table = {
        {(uint8x16_t)parts[0], (uint8x16_t)parts[1], (uint8x16_t)parts[2], (uint8x16_t)parts[3]}};
    return (Lanes<4>)vqtbl4q_u8(table, at);
  }
#else
  // Bytes beyond a part give 0, those before it too.
  v128_t picked = wasm_i8x16_swizzle((v128_t)parts[0], (v128_t)bytes);
  for (int i = 1; i < N; ++i) {
    const auto from_part = (v128_t)(bytes - 0x10101010u * static_cast<uint32_t>(i));
    picked = wasm_v128_or(picked, wasm_i8x16_swizzle((v128_t)parts[i], from_part));
  }
  return (Lanes<4>)picked;
#endif
}
#endif

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
#elif defined(CHANNELSTRIP_PICKS_BYTES)
  if constexpr (kWidth<To> == 8) {
    return join(pick_lanes<Lanes<4>>(from, index), pick_lanes<Lanes<4>>(from, index + 4));
  } else if constexpr (kWidth<From> == 8) {
    return pick_four<2>({low_half(from), high_half(from)}, index);
  } else {
    return pick_four<1>({from}, index);
  }
#else
  To picked;
  for (int i = 0; i < kWidth<To>; ++i) picked[i] = from[index[i]];
  return picked;
#endif
}

// to[i] = index[i] < 8 ? a[index[i]] : b[index[i] - 8], where `from_b` marks the latter.
CHANNELSTRIP_INLINE Lanes<8> pick_either(Lanes<8> a, Lanes<8> b, const int32_t* index,
                                         MaskOf<Lanes<8>> from_b) {
#if defined(CHANNELSTRIP_AVX512)
  (void)from_b;
  return _mm256_permutex2var_ps(a, load<__m256i>(index), b);
#elif defined(__AVX2__)
  return select(from_b, pick_lanes<Lanes<8>>(b, index), pick_lanes<Lanes<8>>(a, index));
#elif defined(CHANNELSTRIP_PICKS_BYTES)
  (void)from_b;
  const Lanes<4> parts[4] = {low_half(a), high_half(a), low_half(b), high_half(b)};
  return join(pick_four(parts, index), pick_four(parts, index + 4));
#else
  Lanes<8> picked;
  for (int i = 0; i < 8; ++i) picked[i] = from_b[i] ? b[index[i] - 8] : a[index[i]];
  return picked;
#endif
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
