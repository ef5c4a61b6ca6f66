// The stem formats with their linked entry points.

#pragma once

#include <ChannelStrip/frame/entry_points.h>
#include <control/library/stem_format.h>

#include <cstddef>
#include <iterator>

namespace channelstrip::test {

// In the order of host::stem_formats().
inline constexpr AlgEntry_16_Stem* kEntries[] = {
    AlgEntry_16_Stem_Mono, AlgEntry_16_Stem_Stereo, AlgEntry_16_Stem_LCR, AlgEntry_16_Stem_Quad,
    AlgEntry_16_Stem_LCRS, AlgEntry_16_Stem_5_0,    AlgEntry_16_Stem_5_1, AlgEntry_16_Stem_6_0,
    AlgEntry_16_Stem_6_1,  AlgEntry_16_Stem_7_0,    AlgEntry_16_Stem_7_1};

struct Format {
  host::StemFormat stem;
  AlgEntry_16_Stem* entry;
};

inline Format format_at(std::size_t index) {
  index %= std::size(kEntries);
  return {host::stem_formats()[index], kEntries[index]};
}

}  // namespace channelstrip::test
