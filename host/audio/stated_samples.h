// Where a file's header says that the samples lie.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace channelstrip::host {

struct StatedSamples {
  std::uint64_t begin, end;  // bytes from the beginning of the file
};

// Of WAV, RF64, Wave64, AIFF and AU, from the beginning of a file; none for other containers, for
// sizes that a writer to a pipe leaves open, and where `header` ends before the samples begin.
std::optional<StatedSamples> stated_samples(std::string_view header);

}  // namespace channelstrip::host
