// Moves neighbouring numbers of many records between memory and lanes, one lane per record.

#pragma once

#include "moves.h"

namespace channelstrip {

// The four lanes that begin at lane 4 Part.
template <int Part, typename V>
CHANNELSTRIP_INLINE Lanes<4> part_of(V x) {
  return __builtin_shufflevector(x, x, 4 * Part, 4 * Part + 1, 4 * Part + 2, 4 * Part + 3);
}

// transpose() in every four lanes by themselves.
CHANNELSTRIP_INLINE void transpose_parts(Lanes<4> (&m)[4]) {
  transpose(m);
}
CHANNELSTRIP_INLINE void transpose_parts(Lanes<8> (&m)[4]) {
  const Lanes<8> a = __builtin_shufflevector(m[0], m[1], 0, 8, 1, 9, 4, 12, 5, 13);
  const Lanes<8> b = __builtin_shufflevector(m[2], m[3], 0, 8, 1, 9, 4, 12, 5, 13);
  const Lanes<8> c = __builtin_shufflevector(m[0], m[1], 2, 10, 3, 11, 6, 14, 7, 15);
  const Lanes<8> d = __builtin_shufflevector(m[2], m[3], 2, 10, 3, 11, 6, 14, 7, 15);
  m[0] = __builtin_shufflevector(a, b, 0, 1, 8, 9, 4, 5, 12, 13);
  m[1] = __builtin_shufflevector(a, b, 2, 3, 10, 11, 6, 7, 14, 15);
  m[2] = __builtin_shufflevector(c, d, 0, 1, 8, 9, 4, 5, 12, 13);
  m[3] = __builtin_shufflevector(c, d, 2, 3, 10, 11, 6, 7, 14, 15);
}
CHANNELSTRIP_INLINE void transpose_parts(Lanes<16> (&m)[4]) {
  using V = Lanes<16>;
  const auto low = [](V x, V y) {
    return __builtin_shufflevector(x, y, 0, 16, 1, 17, 4, 20, 5, 21, 8, 24, 9, 25, 12, 28, 13, 29);
  };
  const auto high = [](V x, V y) {
    return __builtin_shufflevector(x, y, 2, 18, 3, 19, 6, 22, 7, 23, 10, 26, 11, 27, 14, 30, 15,
                                   31);
  };
  const auto low_pairs = [](V x, V y) {
    return __builtin_shufflevector(x, y, 0, 1, 16, 17, 4, 5, 20, 21, 8, 9, 24, 25, 12, 13, 28, 29);
  };
  const auto high_pairs = [](V x, V y) {
    return __builtin_shufflevector(x, y, 2, 3, 18, 19, 6, 7, 22, 23, 10, 11, 26, 27, 14, 15, 30,
                                   31);
  };
  const V a = low(m[0], m[1]), b = low(m[2], m[3]), c = high(m[0], m[1]), d = high(m[2], m[3]);
  m[0] = low_pairs(a, b);
  m[1] = high_pairs(a, b);
  m[2] = low_pairs(c, d);
  m[3] = high_pairs(c, d);
}

// columns[i] = number i of every lane's record, for four numbers from at(lane) on.
template <typename V, typename At>
CHANNELSTRIP_INLINE void load_columns(V (&columns)[4], At at) {
  for (int i = 0; i < 4; ++i) {
    const auto row = [&](int lane) { return load<Lanes<4>>(at(lane)); };
    if constexpr (kWidth<V> == 4) columns[i] = row(i);
    if constexpr (kWidth<V> == 8) columns[i] = join(row(i), row(i + 4));
    if constexpr (kWidth<V> == 16) {
      columns[i] = join(join(row(i), row(i + 4)), join(row(i + 8), row(i + 12)));
    }
  }
  transpose_parts(columns);
}

// The same for a record that all lanes share.
template <typename V>
CHANNELSTRIP_INLINE void load_shared_columns(V (&columns)[4], const float* record) {
  for (int i = 0; i < 4; ++i) columns[i] = broadcast<V>(record[i]);
}

// The reverse, for the first Count numbers. A lane for which at(lane) is null isn't stored.
template <int Count = 4, typename V, typename At>
CHANNELSTRIP_INLINE void store_columns(const V (&columns)[4], At at) {
  V rows[4];
  for (int i = 0; i < 4; ++i) rows[i] = columns[i];
  transpose_parts(rows);
  for (int i = 0; i < 4; ++i) {
    const auto store_row = [&](int lane, Lanes<4> row) {
      if (float* const to = at(lane)) __builtin_memcpy(to, &row, Count * sizeof(float));
    };
    store_row(i, part_of<0>(rows[i]));
    if constexpr (kWidth < V >> 4) store_row(i + 4, part_of<1>(rows[i]));
    if constexpr (kWidth < V >> 8) {
      store_row(i + 8, part_of<2>(rows[i]));
      store_row(i + 12, part_of<3>(rows[i]));
    }
  }
}

}  // namespace channelstrip
