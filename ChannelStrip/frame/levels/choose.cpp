// The exported names, in a library that holds every level: indirect functions, for which the
// dynamic linker asks once per name. It may ask while it relocates, so nothing here needs a
// relocation: what is called is inlined or hidden, and addresses are relative.

#include "../entry_points.h"
#include "../processor.h"
#include "../stems.h"

namespace {

inline AlgEntry_16_Stem* choose(AlgEntry_16_Stem* x86_64, AlgEntry_16_Stem* x86_64_v3,
                                AlgEntry_16_Stem* x86_64_v4, AlgEntry_16_Stem* x86_64_v4_ranges) {
  const struct channelstrip_processor processor = channelstrip_this_processor();
  switch (channelstrip_level_of(processor)) {
    case CHANNELSTRIP_X86_64_V4:
      return channelstrip_joins_ports(processor) ? x86_64_v4_ranges : x86_64_v4;
    case CHANNELSTRIP_X86_64_V3:
      return x86_64_v3;
    default:
      return x86_64;
  }
}

}  // namespace

#define CHANNELSTRIP_CHOOSE(stem, channels, groups)                                       \
  AlgEntry_16_Stem AlgEntry_16_Stem_##stem##_x86_64, AlgEntry_16_Stem_##stem##_x86_64_v3, \
      AlgEntry_16_Stem_##stem##_x86_64_v4, AlgEntry_16_Stem_##stem##_x86_64_v4_ranges;    \
  AlgEntry_16_Stem* channelstrip_choose_##stem() {                                        \
    return choose(AlgEntry_16_Stem_##stem##_x86_64, AlgEntry_16_Stem_##stem##_x86_64_v3,  \
                  AlgEntry_16_Stem_##stem##_x86_64_v4,                                    \
                  AlgEntry_16_Stem_##stem##_x86_64_v4_ranges);                            \
  }                                                                                       \
  __attribute__((ifunc("channelstrip_choose_" #stem))) AlgEntry_16_Stem AlgEntry_16_Stem_##stem;

extern "C" {
#pragma GCC visibility push(hidden)
CHANNELSTRIP_EACH_STEM(CHANNELSTRIP_CHOOSE)
#pragma GCC visibility pop
}
