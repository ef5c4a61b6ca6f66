// Where a file's header says that the samples lie.

#pragma once

#include <cstddef>
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

// In a WAV file of `length` bytes whose sizes were never filled in, because it was written to a
// pipe or not completed, the offset of the size of its samples: that size is 0, and the file goes
// on beyond the end that its header states. 0 for any other file. `header` is its beginning.
std::size_t open_size(std::string_view header, std::uint64_t length);

}  // namespace channelstrip::host
