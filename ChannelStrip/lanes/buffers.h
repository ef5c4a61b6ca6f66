// Moves a quad of every channel between the host's buffers and lanes, one lane per channel.

#pragma once

#include "moves.h"

namespace channelstrip {

// quad[k] = sample offset + k of every lane's buffer.
template <typename V>
CHANNELSTRIP_INLINE void load_lanes(V (&quad)[4], const float* const* buffers, int32_t offset) {
  Lanes<4> rows[kWidth<V> / 4][4];
  for (int part = 0; part < kWidth<V> / 4; ++part) {
    for (int lane = 0; lane < 4; ++lane) {
      rows[part][lane] = load<Lanes<4>>(buffers[4 * part + lane] + offset);
    }
    transpose(rows[part]);
  }
  for (int k = 0; k < 4; ++k) {
    if constexpr (kWidth<V> == 4) quad[k] = rows[0][k];
    if constexpr (kWidth<V> == 8) quad[k] = join(rows[0][k], rows[1][k]);
  }
}

// The reverse. A lane whose buffer is null isn't stored.
template <typename V>
CHANNELSTRIP_INLINE void store_lanes(const V (&quad)[4], float* const* buffers, int32_t offset) {
  for (int part = 0; part < kWidth<V> / 4; ++part) {
    Lanes<4> rows[4];
    for (int k = 0; k < 4; ++k) {
      if constexpr (kWidth<V> == 4) rows[k] = quad[k];
      if constexpr (kWidth<V> == 8) rows[k] = part == 0 ? low_half(quad[k]) : high_half(quad[k]);
    }
    transpose(rows);
    for (int lane = 0; lane < 4; ++lane) {
      if (float* const buffer = buffers[4 * part + lane]) store(buffer + offset, rows[lane]);
    }
  }
}

}  // namespace channelstrip
