// Channels of an interleaved stream.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace channelstrip::test {

// Those of the `width` channels that are named, interleaved again.
inline std::vector<float> channels_of(std::span<const float> frames, std::size_t width,
                                      std::span<const std::size_t> channels) {
  std::vector<float> some;
  for (std::size_t i = 0; i < frames.size(); i += width) {
    for (const std::size_t c : channels) some.push_back(frames[i + c]);
  }
  return some;
}

inline std::vector<float> channel(std::span<const float> frames, std::size_t width, std::size_t c) {
  return channels_of(frames, width, {&c, 1});
}

}  // namespace channelstrip::test
