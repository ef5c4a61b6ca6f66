// Audio through a strip, in memory.

#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "audio.h"
#include "control/library/library.h"
#include "control/preset/preset.h"
#include "control/strip/strip_stream.h"

namespace channelstrip::test {

struct Processed {
  std::vector<float> audio;  // interleaved
  host::StripMeters meters;
};

// The usual format with that many channels, with the channels in its default order.
inline host::ChannelLayout usual_layout(int channels) {
  return host::choose_layout(channels, {});
}

// `next_cut` returns how many frames the stream gets in the next call.
inline Processed through_strip(
    const host::StripSettings& settings, const TestAudio& input, const host::ChannelLayout& layout,
    const std::function<std::size_t()>& next_cut = [] { return std::size_t{4096}; },
    std::span<const float> key = {}) {
  static const host::Library library(CHANNELSTRIP_LIBRARY);
  host::StripStream stream(library, layout, input.sample_rate, settings);
  Processed result;
  for (std::span<const float> rest(input.floats); !rest.empty();) {
    const std::size_t wanted = next_cut() * static_cast<std::size_t>(input.channels);
    const std::size_t cut = std::min(wanted, rest.size());
    const std::size_t frames = cut / static_cast<std::size_t>(input.channels);
    stream.process(rest.first(cut), key.first(std::min(frames, key.size())), result.audio);
    rest = rest.subspan(cut);
    key = key.subspan(std::min(frames, key.size()));
  }
  stream.finish(result.audio);
  result.meters = stream.meters();
  return result;
}

inline Processed through_strip(const host::StripSettings& settings, const TestAudio& input) {
  return through_strip(settings, input, usual_layout(input.channels));
}

}  // namespace channelstrip::test
