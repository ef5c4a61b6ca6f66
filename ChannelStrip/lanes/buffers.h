// Moves a quad of every channel between the host's buffers and lanes, one lane per channel.

#pragma once

#include "moves.h"

namespace channelstrip {

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

// quad[k] = sample offset + k of every lane's buffer.
template <typename V>
CHANNELSTRIP_INLINE void load_lanes(V (&quad)[4], const float* const* buffers, int32_t offset) {
  for (int row = 0; row < 4; ++row) {
    Lanes<4> blocks[kWidth<V> / 4];
    for (int block = 0; block < kWidth<V> / 4; ++block) {
      blocks[block] = load<Lanes<4>>(buffers[4 * block + row] + offset);
    }
    quad[row] = join_blocks<V>(blocks);
  }
  transpose(quad);
}

// The reverse. A lane whose buffer is null isn't stored.
template <typename V>
CHANNELSTRIP_INLINE void store_lanes(const V (&quad)[4], float* const* buffers, int32_t offset) {
  V rows[4] = {quad[0], quad[1], quad[2], quad[3]};
  transpose(rows);
  for (int row = 0; row < 4; ++row) {
    Lanes<4> blocks[kWidth<V> / 4];
    split_blocks(rows[row], blocks);
    for (int block = 0; block < kWidth<V> / 4; ++block) {
      if (float* const buffer = buffers[4 * block + row]) store(buffer + offset, blocks[block]);
    }
  }
}

}  // namespace channelstrip
