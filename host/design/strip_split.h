// Several strips for one stream: what a link map takes that has more groups than the format holds.

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
  std::vector<std::size_t> channels;  // rising
};

// The strips that process a stream of `format` while `maps` hold, one after the other: a single one
// where each map fits the format's groups. Otherwise a strip for every set of channels that no map
// links with others, which gives each channel what one strip with enough groups would. Strips of
// one format stand beside each other. Throws std::invalid_argument where channels that a map links
// take more groups under another map than their strip's format holds: stereo that is linked for a
// time and unlinked for another.
std::vector<SplitStrip> split_strip(const StemFormat& format, std::span<const LinkMap> maps);

// The records of one of these strips, from those of the stream.
StripCoefficients coefficients_of(const SplitStrip& strip, const StripCoefficients& stream);

}  // namespace channelstrip::host
