// Defines the entry point of a stem format. CHANNELSTRIP_ENTRY(stem), which the source defines that
// includes this, is its name.

#pragma once

#include "channel_strip.h"
#include "entry_points.h"
#include "stems.h"

#define CHANNELSTRIP_DEFINE_ENTRY(stem, channels, groups)                                         \
  void CHANNELSTRIP_ENTRY(stem)(const SChannelStrip_Alg_Context* const* begin, const void* end) { \
    channelstrip::ChannelStrip_AlgorithmProcessFunction<channels, groups>(begin, end);            \
  }
