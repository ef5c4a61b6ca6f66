// Fused steps on arrays, built for processors that have no instruction for them.

#pragma once

#include <cstddef>

namespace channelstrip::test {

using FusedSteps = void(const float* a, const float* b, const float* c, float* results,
                        size_t count);

// One at a time, and side by side: a multiple of eight.
FusedSteps fused_sse2, fused_lanes_sse2, fused_avx, fused_lanes_avx;

// Whether these were built so.
bool is_made_of_doubles_sse2();
bool is_made_of_doubles_avx();

// What doubles give without the care that is taken: rounded to double, then to single.
FusedSteps fused_twice;

}  // namespace channelstrip::test
