// The entry points of the library that a program is linked with, in the order of kFormats.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

#include "scenes.h"

namespace channelstrip::golden {

inline AlgEntry_16_Stem* const kLinkedEntries[kFormatCount] = {
    AlgEntry_16_Stem_Mono, AlgEntry_16_Stem_Stereo, AlgEntry_16_Stem_LCR, AlgEntry_16_Stem_Quad,
    AlgEntry_16_Stem_LCRS, AlgEntry_16_Stem_5_0,    AlgEntry_16_Stem_5_1, AlgEntry_16_Stem_6_0,
    AlgEntry_16_Stem_6_1,  AlgEntry_16_Stem_7_0,    AlgEntry_16_Stem_7_1};

}  // namespace channelstrip::golden
