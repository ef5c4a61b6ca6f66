// The decibel conversions of fast_log.h in lanes: the same steps with the same bits.

#pragma once

#include "../lanes/rows.h"
#include "fast_log.h"
#include "table_parts.h"

namespace channelstrip {

// The lanes' indices as plain numbers. They go through memory, which the asm statement enforces:
// extracting lanes from a register one by one costs more.
template <int Width>
struct Indices {
  CHANNELSTRIP_INLINE explicit Indices(typename LaneTypes<Width>::Ints index) {
    __builtin_memcpy(of, &index, sizeof of);
    __asm__("" : "+m"(of));
  }
  uint32_t of[Width];
};

// table[i] of the first Count lanes, by plain loads, which are faster than gathers on the
// processors measured.
template <int Count, typename V>
CHANNELSTRIP_INLINE V pick(const float* table, const uint32_t* i) {
  if constexpr (Count <= 0) {
    return V{};
  } else if constexpr (kWidth<V> == 4) {
    return V{table[i[0]], table[i[1]], table[i[2]], table[i[3]]};
  } else {
    using Half = Lanes<kWidth<V> / 2>;
    constexpr int kHalf = kWidth<Half>;
    return join(pick<Count, Half>(table, i), pick<Count - kHalf, Half>(table, i + kHalf));
  }
}

// table[i] and table[i + 1] of the first Count lanes, two neighbouring entries in one load.
template <int Count, typename V>
CHANNELSTRIP_INLINE void pick_pairs(const float* table, const uint32_t* i, V& first, V& second) {
  if constexpr (Count <= 0) {
    first = second = V{};
  } else if constexpr (kWidth<V> == 4) {
    typedef double Pairs __attribute__((vector_size(16)));
    const auto at = [&](int lane) {
      double pair;
      __builtin_memcpy(&pair, table + i[lane], sizeof pair);
      return pair;
    };
    const auto a = (V)Pairs{at(0), at(1)};
    const auto b = (V)Pairs{at(2), at(3)};
    first = __builtin_shufflevector(a, b, 0, 2, 4, 6);
    second = __builtin_shufflevector(a, b, 1, 3, 5, 7);
  } else {
    using Half = Lanes<kWidth<V> / 2>;
    constexpr int kHalf = kWidth<Half>;
    Half firsts[2], seconds[2];
    pick_pairs<Count>(table, i, firsts[0], seconds[0]);
    pick_pairs<Count - kHalf>(table, i + kHalf, firsts[1], seconds[1]);
    first = join(firsts[0], firsts[1]);
    second = join(seconds[0], seconds[1]);
  }
}

// Entry i of gmLog2LUT and the next one, where i is the number that bits 14 to 22 hold. Registers
// of sixteen numbers compute them, with a fifth of the instructions that the loads take.
template <int Count, typename V>
CHANNELSTRIP_INLINE void log_entries(IntsOf<V> bits, V& entry, V& next) {
#if defined(CHANNELSTRIP_AVX512)
  if constexpr (kWidth<V> == 16) {
    const IntsOf<V> j = bits >> 18;  // of which the lowest five bits count
    const IntsOf<V> k = (bits >> 14) & 15;
    const V at = convert<V>(k), at_next = at + 1.0f;
    entry = next = entry_of_32<V>(gmLogCoefs[4], j);
    for (int degree = 3; degree >= 0; --degree) {
      const V coef = entry_of_32<V>(gmLogCoefs[degree], j);
      entry = fused(entry, at, coef);
      next = fused(next, at_next, coef);
    }
    const auto units =
        (IntsOf<V>)((WordsOf<V>)entry_of_32<V>(gmLogUnits, j) >> (WordsOf<V>)(2 * k));
    entry = (V)((IntsOf<V>)entry + (units << 30 >> 30));
    next = (V)((IntsOf<V>)next + (units << 28 >> 30));
    return;
  }
#endif
  const Indices<kWidth<V>> i((bits >> 14) & 511);
  pick_pairs<Count>(gmLog2LUT, i.of, entry, next);
}

CHANNELSTRIP_INLINE float level_to_db(Used<1>, float level) {
  return LevelToDb(level);
}
template <int Count, typename V>
CHANNELSTRIP_INLINE V level_to_db(Used<Count>, V level) {
  using Ints = IntsOf<V>;
  const auto bits = (Ints)level;
  V entry, next;
  log_entries<Count>(bits, entry, next);
  const V fraction = __builtin_convertvector(bits & 0x3FFF, V) * 0x1p-14f;
  const V exponent = __builtin_convertvector(((bits >> 23) & 255) - 127, V);
  const V db = fused(next - entry, fraction, entry + exponent) * 0x1.815184p+2f;
  return select(level > 0.0f, db, broadcast<V>(-140.0f));
}

// gmPowTableH[n]. With AVX-512 it is put together from small tables that stand in registers.
template <int Count, typename V>
CHANNELSTRIP_INLINE V high_factor(IntsOf<V> n) {
#if defined(CHANNELSTRIP_AVX512)
  if constexpr (kWidth<V> >= 8) {
    const V coarse = entry_of_32<V>(gmPowCoarse, n >> 4), fine = entry_of_16<V>(gmPowFine, n & 15);
    return coarse + fused(coarse, fine, entry_of_32<V>(gmPowRest, n >> 4));
  }
#endif
  const Indices<kWidth<V>> i(n);
  return pick<Count, V>(gmPowTableH, i.of);
}

// The fraction bits of gmPowTableL[n], computed rather than looked up: this integer parabola gives
// all 512 rounded entries exactly.
template <typename Ints>
CHANNELSTRIP_INLINE Ints low_fraction(Ints n) {
  return (n * ((n * 31 >> 5) + 726814) + 380400) >> 15;
}

CHANNELSTRIP_INLINE float db_to_gain(Used<1>, float db) {
  return DbToGain(db);
}
template <int Count, typename V>
CHANNELSTRIP_INLINE V db_to_gain(Used<Count>, V db) {
  using Ints = IntsOf<V>;
  const V scaled = fused(db, broadcast<V>(0x1.542a5ap+20f), broadcast<V>(0x1.fcp+29f));
  // The conversion gives the lowest integer for everything out of range. What isn't below 2^31, NaN
  // included, must give the highest.
  const Ints below = __builtin_convertvector(scaled, Ints);
  const Ints n = select(scaled < 0x1p31f, below, Ints{} + INT32_MAX);
  const V high = high_factor<Count, V>((n >> 14) & 511);
  const V low = (V)(low_fraction((n >> 5) & 511) | 0x3F800000);
  const V mantissa = high * low;
  return (V)((n & (int32_t)0xFF800000) | ((Ints)mantissa & 0x007FFFFF));
}

}  // namespace channelstrip
