// Loops over the library's fused steps, for sources that are each compiled for another processor.

#pragma once

#include <ChannelStrip/lanes/moves.h>

#include "by_doubles.h"

namespace channelstrip::test {
namespace {

#if defined(CHANNELSTRIP_FUSED_BY_DOUBLES)
constexpr bool kMadeOfDoubles = true;
#else
constexpr bool kMadeOfDoubles = false;
#endif

inline void one_at_a_time(const float* a, const float* b, const float* c, float* results,
                          size_t count) {
  for (size_t i = 0; i < count; ++i) results[i] = channelstrip_fused(a[i], b[i], c[i]);
}

template <int W>
void side_by_side(const float* a, const float* b, const float* c, float* results, size_t count) {
  using V = Lanes<W>;
  for (size_t i = 0; i < count; i += W) {
    store(results + i, fused(load<V>(a + i), load<V>(b + i), load<V>(c + i)));
  }
}

}  // namespace
}  // namespace channelstrip::test
