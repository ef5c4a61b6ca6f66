// Moves neighbouring numbers of many records or buffers between memory and lanes, one lane per
// record.

#pragma once

#include "moves.h"

namespace channelstrip {

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
CHANNELSTRIP_INLINE_OPTIMISED void transpose(V (&m)[4]) {
  if constexpr (kLanes < kWidth<V>) {
    // GCC would shuffle lanes one by one that take several registers.
    using Half = Lanes<kWidth<V> / 2>;
    Half low[4], high[4];
    for (int i = 0; i < 4; ++i) low[i] = low_half(m[i]), high[i] = high_half(m[i]);
    transpose(low);
    transpose(high);
    for (int i = 0; i < 4; ++i) m[i] = join(low[i], high[i]);
  } else {
    const V a = shuffle_blocks<0, 4, 1, 5>(m[0], m[1]);
    const V b = shuffle_blocks<0, 4, 1, 5>(m[2], m[3]);
    const V c = shuffle_blocks<2, 6, 3, 7>(m[0], m[1]);
    const V d = shuffle_blocks<2, 6, 3, 7>(m[2], m[3]);
    m[0] = shuffle_blocks<0, 1, 4, 5>(a, b);
    m[1] = shuffle_blocks<2, 3, 6, 7>(a, b);
    m[2] = shuffle_blocks<0, 1, 4, 5>(c, d);
    m[3] = shuffle_blocks<2, 3, 6, 7>(c, d);
  }
}

// Four times four doubles, likewise.
CHANNELSTRIP_INLINE void transpose(Doubles (&m)[4]) {
  const Doubles a = __builtin_shufflevector(m[0], m[1], 0, 4, 2, 6);
  const Doubles b = __builtin_shufflevector(m[0], m[1], 1, 5, 3, 7);
  const Doubles c = __builtin_shufflevector(m[2], m[3], 0, 4, 2, 6);
  const Doubles d = __builtin_shufflevector(m[2], m[3], 1, 5, 3, 7);
  m[0] = __builtin_shufflevector(a, c, 0, 1, 4, 5);
  m[1] = __builtin_shufflevector(b, d, 0, 1, 4, 5);
  m[2] = __builtin_shufflevector(a, c, 2, 3, 6, 7);
  m[3] = __builtin_shufflevector(b, d, 2, 3, 6, 7);
}

// The blocks of four lanes that a register consists of.
template <typename V>
CHANNELSTRIP_INLINE V join_blocks(const Lanes<4>* blocks) {
  if constexpr (kWidth<V> == 4) {
    return blocks[0];
  } else {
    using Half = Lanes<kWidth<V> / 2>;
    return join(join_blocks<Half>(blocks), join_blocks<Half>(blocks + kWidth<Half> / 4));
  }
}
template <typename V>
CHANNELSTRIP_INLINE void split_blocks(V x, Lanes<4>* blocks) {
  if constexpr (kWidth<V> == 4) {
    blocks[0] = x;
  } else {
    split_blocks(low_half(x), blocks);
    split_blocks(high_half(x), blocks + kWidth<V> / 8);
  }
}

// columns[i] = number i of every lane's record, for four numbers from at(lane) on.
template <typename V, typename At>
CHANNELSTRIP_INLINE_OPTIMISED void load_columns(V (&columns)[4], At at) {
  for (int row = 0; row < 4; ++row) {
    Lanes<4> blocks[kWidth<V> / 4];
    for (int block = 0; block < kWidth<V> / 4; ++block) {
      blocks[block] = load<Lanes<4>>(at(4 * block + row));
    }
    columns[row] = join_blocks<V>(blocks);
  }
  transpose(columns);
}

// The same for a record that all lanes share.
template <typename V>
CHANNELSTRIP_INLINE void load_shared_columns(V (&columns)[4], const float* record) {
  for (int i = 0; i < 4; ++i) columns[i] = broadcast<V>(record[i]);
}

// The reverse, for the first Count numbers, from to[lane] + offset on. A lane whose to[lane] is
// null isn't stored.
template <int Count = 4, typename V>
CHANNELSTRIP_INLINE_OPTIMISED void store_columns(const V (&columns)[4], float* const* to,
                                                 int32_t offset) {
  V rows[4] = {columns[0], columns[1], columns[2], columns[3]};
  transpose(rows);
  for (int row = 0; row < 4; ++row) {
    Lanes<4> blocks[kWidth<V> / 4];
    split_blocks(rows[row], blocks);
    for (int block = 0; block < kWidth<V> / 4; ++block) {
      if (float* const lane = to[4 * block + row]) {
        __builtin_memcpy(lane + offset, &blocks[block], Count * sizeof(float));
      }
    }
  }
}

}  // namespace channelstrip
