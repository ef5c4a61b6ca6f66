// The decibel conversions of fast_log.h in lanes: the same steps with the same bits.
//
// Tables are read by plain loads, which are faster than gathers on the processors measured. A half
// of eight lanes is looked up only if one of its lanes is used.

#pragma once

#include "../lanes/rows.h"
#include "fast_log.h"

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

// table[i] of every lane.
CHANNELSTRIP_INLINE Lanes<4> pick(const float* table, const uint32_t* i) {
  return Lanes<4>{table[i[0]], table[i[1]], table[i[2]], table[i[3]]};
}
template <int Count, typename V>
CHANNELSTRIP_INLINE V pick(Used<Count>, const float* table, IntsOf<V> index) {
  const Indices<kWidth<V>> i(index);
  const Lanes<4> low = pick(table, i.of);
  if constexpr (kWidth<V> == 4) return low;
  if constexpr (kWidth<V> == 8) {
    return join(low, Count > 4 ? pick(table, i.of + 4) : Lanes<4>{});
  }
}

// table[i] and table[i + 1], two neighbouring entries in one load.
CHANNELSTRIP_INLINE void pick_pairs(const float* table, const uint32_t* i, Lanes<4>& first,
                                    Lanes<4>& second) {
  typedef double Pairs __attribute__((vector_size(16)));
  const auto at = [&](int lane) {
    double pair;
    __builtin_memcpy(&pair, table + i[lane], sizeof pair);
    return pair;
  };
  const auto a = (Lanes<4>)Pairs{at(0), at(1)};
  const auto b = (Lanes<4>)Pairs{at(2), at(3)};
  first = __builtin_shufflevector(a, b, 0, 2, 4, 6);
  second = __builtin_shufflevector(a, b, 1, 3, 5, 7);
}
template <int Count, typename V>
CHANNELSTRIP_INLINE void pick_pairs(Used<Count>, const float* table, IntsOf<V> index, V& first,
                                    V& second) {
  const Indices<kWidth<V>> i(index);
  if constexpr (kWidth<V> == 4) pick_pairs(table, i.of, first, second);
  if constexpr (kWidth<V> == 8) {
    Lanes<4> firsts[2] = {}, seconds[2] = {};
    pick_pairs(table, i.of, firsts[0], seconds[0]);
    if constexpr (Count > 4) pick_pairs(table, i.of + 4, firsts[1], seconds[1]);
    first = join(firsts[0], firsts[1]);
    second = join(seconds[0], seconds[1]);
  }
}

CHANNELSTRIP_INLINE float level_to_db(Used<1>, float level) {
  return LevelToDb(level);
}
template <int Count, typename V>
CHANNELSTRIP_INLINE V level_to_db(Used<Count> used, V level) {
  using Ints = IntsOf<V>;
  const auto bits = (Ints)level;
  V entry, next;
  pick_pairs(used, gmLog2LUT, (bits >> 14) & 511, entry, next);
  const V fraction = __builtin_convertvector(bits & 0x3FFF, V) * 0x1p-14f;
  const V exponent = __builtin_convertvector(((bits >> 23) & 255) - 127, V);
  const V db = fused(next - entry, fraction, entry + exponent) * 0x1.815184p+2f;
  return select(level > 0.0f, db, broadcast<V>(-140.0f));
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
CHANNELSTRIP_INLINE V db_to_gain(Used<Count> used, V db) {
  using Ints = IntsOf<V>;
  const V scaled = fused(db, broadcast<V>(0x1.542a5ap+20f), broadcast<V>(0x1.fcp+29f));
  // The conversion gives the lowest integer for everything out of range. What isn't below 2^31, NaN
  // included, must give the highest.
  const Ints below = __builtin_convertvector(scaled, Ints);
  const Ints n = select(scaled < 0x1p31f, below, Ints{} + INT32_MAX);
  const V high = pick<Count, V>(used, gmPowTableH, (n >> 14) & 511);
  const V low = (V)(low_fraction((n >> 5) & 511) | 0x3F800000);
  const V mantissa = high * low;
  return (V)((n & (int32_t)0xFF800000) | ((Ints)mantissa & 0x007FFFFF));
}

}  // namespace channelstrip
