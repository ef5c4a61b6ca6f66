// A waveform as the extremes of its columns.

#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "folding_track.h"

namespace channelstrip::host {

struct Extremes {
  float low = 0, high = 0;

  void merge(const Extremes& other) {
    low = std::min(low, other.low);
    high = std::max(high, other.high);
  }
};

// The extremes of all samples of some of a stream's channels.
class Envelope {
 public:
  explicit Envelope(std::vector<std::size_t> channels, std::size_t columns = 240)
      : channels_(std::move(channels)), track_(columns) {}

  // A whole number of interleaved frames of `channels` channels.
  void add(std::span<const float> frames, std::size_t channels);

  std::span<const Extremes> columns() const { return track_.columns(); }
  std::size_t frames_per_column() const { return track_.units_per_column(); }

 private:
  std::vector<std::size_t> channels_;
  FoldingTrack<Extremes> track_;
};

}  // namespace channelstrip::host
