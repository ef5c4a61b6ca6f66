// Moves a quad of every channel between the host's buffers and lanes, one lane per channel.

#pragma once

#include "transpose.h"

namespace channelstrip {

// quad[k] = sample offset + k of every lane's buffer.
template <typename V>
CHANNELSTRIP_INLINE void load_lanes(V (&quad)[4], const float* const* buffers, int32_t offset) {
  load_columns(quad, [=](int lane) { return buffers[lane] + offset; });
}

// The reverse. A lane whose buffer is null isn't stored.
template <typename V>
CHANNELSTRIP_INLINE void store_lanes(const V (&quad)[4], float* const* buffers, int32_t offset) {
  store_columns(quad, buffers, offset);
}

}  // namespace channelstrip
