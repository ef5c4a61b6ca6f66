// Exports one level's entry points under the names that the library exports.

#include <ChannelStrip/frame/entry_points.h>
#include <ChannelStrip/frame/stems.h>

#define JOINED(stem, level) AlgEntry_16_Stem_##stem##_##level
#define OF_LEVEL(stem, level) JOINED(stem, level)
#define EXPORT(stem, channels, groups)                                                           \
  __attribute__((visibility("hidden"))) AlgEntry_16_Stem OF_LEVEL(stem, CHANNELSTRIP_LEVEL);     \
  void AlgEntry_16_Stem_##stem(const SChannelStrip_Alg_Context* const* begin, const void* end) { \
    OF_LEVEL(stem, CHANNELSTRIP_LEVEL)(begin, end);                                              \
  }

extern "C" {
CHANNELSTRIP_EACH_STEM(EXPORT)
}
