// The entry points for a processor of x86-64-v4 on which single strips are quicker with the
// instructions of x86-64-v3.

#include "../entry_points.h"
#include "../stems.h"

#define CHANNELSTRIP_DIVIDE(stem, channels, groups)                                              \
  AlgEntry_16_Stem AlgEntry_16_Stem_##stem##_x86_64_v3, AlgEntry_16_Stem_##stem##_x86_64_v4;     \
  void AlgEntry_16_Stem_##stem##_x86_64_v4_ranges(const SChannelStrip_Alg_Context* const* begin, \
                                                  const void* end) {                             \
    if (begin + 1 == end) {                                                                      \
      AlgEntry_16_Stem_##stem##_x86_64_v3(begin, end);                                           \
    } else {                                                                                     \
      AlgEntry_16_Stem_##stem##_x86_64_v4(begin, end);                                           \
    }                                                                                            \
  }

extern "C" {
#pragma GCC visibility push(hidden)
CHANNELSTRIP_EACH_STEM(CHANNELSTRIP_DIVIDE)
#pragma GCC visibility pop
}
