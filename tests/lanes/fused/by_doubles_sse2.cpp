#include "arrays.h"

namespace channelstrip::test {

bool is_made_of_doubles_sse2() {
  return kMadeOfDoubles;
}

void fused_sse2(const float* a, const float* b, const float* c, float* results, size_t count) {
  one_at_a_time(a, b, c, results, count);
}
void fused_lanes_sse2(const float* a, const float* b, const float* c, float* results,
                      size_t count) {
  side_by_side<4>(a, b, c, results, count);
}
void fused_twice(const float* a, const float* b, const float* c, float* results, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    results[i] = static_cast<float>(static_cast<double>(a[i]) * static_cast<double>(b[i]) +
                                    static_cast<double>(c[i]));
  }
}

}  // namespace channelstrip::test
