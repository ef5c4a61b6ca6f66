#include "arrays.h"

namespace channelstrip::test {

bool is_made_of_doubles_avx() {
  return kMadeOfDoubles;
}

void fused_avx(const float* a, const float* b, const float* c, float* results, size_t count) {
  one_at_a_time(a, b, c, results, count);
}
void fused_lanes_avx(const float* a, const float* b, const float* c, float* results, size_t count) {
  side_by_side<8>(a, b, c, results, count);
}

}  // namespace channelstrip::test
