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

// Four vectors of four lanes: rows become columns.
CHANNELSTRIP_INLINE void transpose(Lanes<4> (&m)[4]) {
  const Lanes<4> a = __builtin_shufflevector(m[0], m[1], 0, 4, 1, 5);
  const Lanes<4> b = __builtin_shufflevector(m[2], m[3], 0, 4, 1, 5);
  const Lanes<4> c = __builtin_shufflevector(m[0], m[1], 2, 6, 3, 7);
  const Lanes<4> d = __builtin_shufflevector(m[2], m[3], 2, 6, 3, 7);
  m[0] = __builtin_shufflevector(a, b, 0, 1, 4, 5);
  m[1] = __builtin_shufflevector(a, b, 2, 3, 6, 7);
  m[2] = __builtin_shufflevector(c, d, 0, 1, 4, 5);
  m[3] = __builtin_shufflevector(c, d, 2, 3, 6, 7);
}

}  // namespace channelstrip
