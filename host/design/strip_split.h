// Splits a stream over several strips, for link maps with more groups than its format holds.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "link_map.h"
#include "stem_format.h"
#include "strip_coefficients.h"

namespace channelstrip::host {

// A strip and those of the stream's channels that it processes, as many as its format has.
struct SplitStrip {
  const StemFormat* format;
  std::vector<std::size_t> channels;  // ascending
};

// The strips that process a stream of `format` in which `maps` apply one after the other: a single
// strip if each map fits the format's groups. Otherwise one strip for each set of channels that no
// map links with others, which gives every channel what one strip with enough groups would. Strips
// of the same format are adjacent. Throws std::invalid_argument if the channels of a set need more
// groups under one of the maps than a format of that many channels has: stereo that is linked at
// one time and unlinked at another, for example.
std::vector<SplitStrip> split_strip(const StemFormat& format, std::span<const LinkMap> maps);

// The records of one of these strips, from those of the stream.
StripCoefficients coefficients_of(const SplitStrip& strip, const StripCoefficients& stream);

}  // namespace channelstrip::host
