// A strip in memory, cut into calls at will.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "control/design/channel_layout.h"
#include "control/library/library.h"
#include "control/strip/live_strip.h"
#include "tests/control/streamed.h"

namespace channelstrip::test {

inline constexpr double kLiveRate = 48000;

// One buffer per channel.
using Planar = std::vector<std::vector<float>>;

inline const host::EntryPoints& entry_points() {
  static const host::Library library(CHANNELSTRIP_LIBRARY);
  static const host::EntryPoints all = library.entry_points();
  return all;
}

inline Planar planar_bursts(std::size_t channels, std::size_t frames) {
  const std::vector<float> samples = bursts(frames, channels);
  Planar planar(channels);
  for (std::size_t i = 0; i < samples.size(); ++i) planar[i % channels].push_back(samples[i]);
  return planar;
}

struct LiveChange {
  std::size_t frame;
  host::StripSettings settings;
};

struct LiveStream {
  const host::StemFormat* format;
  Planar input;
  std::vector<float> key = {};
  host::StripSettings settings = {};
  std::vector<LiveChange> changes = {};  // in order
};

struct LiveResult {
  Planar output;
  host::LiveMeters meters;  // of the whole stream
};

// Which calls get buffers in which outputs replace inputs.
enum class InPlace { kNever, kAlways, kInTurns };

// `next_cut` returns how many frames the next call gets. A change is set before the call that
// contains its frame, which is cut there; so a change takes effect in the block that begins at its
// frame or after it.
template <class Cut>
LiveResult play_live(const LiveStream& stream, Cut next_cut, InPlace in_place = InPlace::kNever) {
  const host::ChannelLayout layout = host::default_layout(*stream.format);
  host::LiveStrip strip(entry_points(), layout, kLiveRate, stream.settings);
  const std::size_t channels = stream.input.size(), frames = stream.input[0].size();
  LiveResult result{.output = Planar(channels, std::vector<float>(frames)), .meters = {}};
  bool is_in_place = in_place == InPlace::kAlways;
  std::size_t change = 0;
  for (std::size_t at = 0; at < frames;) {
    while (change < stream.changes.size() && stream.changes[change].frame <= at) {
      strip.set(stream.changes[change++].settings);
    }
    std::size_t end = std::min(frames, at + next_cut());
    if (change < stream.changes.size()) end = std::min(end, stream.changes[change].frame);
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    for (std::size_t c = 0; c < channels; ++c) {
      inputs.push_back(stream.input[c].data() + at);
      outputs.push_back(result.output[c].data() + at);
      if (!is_in_place) continue;
      std::copy_n(inputs[c], end - at, outputs[c]);
      inputs[c] = outputs[c];
    }
    strip.process(inputs.data(), stream.key.empty() ? nullptr : stream.key.data() + at,
                  outputs.data(), end - at);
    at = end;
    if (in_place == InPlace::kInTurns) is_in_place = !is_in_place;
    if (in_place == InPlace::kInTurns && at < frames) continue;  // all meters at the end
    result.meters.append(strip.meters());
    strip.clear_meters();
  }
  return result;
}

inline LiveResult play_live(const LiveStream& stream) {
  return play_live(stream, [] { return std::size_t{16}; });
}

}  // namespace channelstrip::test
