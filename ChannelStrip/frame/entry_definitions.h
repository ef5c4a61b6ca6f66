// Defines the entry points of all stem formats. CHANNELSTRIP_ENTRY(stem), which the source defines
// that includes this, is the name of a stem's.

#include "channel_strip.h"
#include "entry_points.h"
#include "stems.h"

#define CHANNELSTRIP_DEFINE_ENTRY(stem, channels, groups)                                         \
  void CHANNELSTRIP_ENTRY(stem)(const SChannelStrip_Alg_Context* const* begin, const void* end) { \
    channelstrip::ChannelStrip_AlgorithmProcessFunction<channels, groups>(begin, end);            \
  }

extern "C" {
CHANNELSTRIP_EACH_STEM(CHANNELSTRIP_DEFINE_ENTRY)
}
