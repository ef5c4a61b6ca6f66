// A waveform as the extremes of its columns.

#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "extremes.h"
#include "folding_track.h"

namespace channelstrip::host {

// The extremes of all samples of some of a stream's channels.
class Envelope {
 public:
  explicit Envelope(std::vector<std::size_t> channels, std::size_t columns = 240)
      : channels_(std::move(channels)), track_(columns) {}

  // One buffer for each channel of the stream, all of the same length.
  void add(std::span<const std::vector<float>> buffers);

  std::span<const Extremes> columns() const { return track_.columns(); }
  std::size_t frames_per_column() const { return track_.units_per_column(); }

 private:
  std::vector<std::size_t> channels_;
  FoldingTrack<Extremes> track_;
};

}  // namespace channelstrip::host
