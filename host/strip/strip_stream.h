// A strip over a stream of any length, cut any way.

#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "strip_set.h"

namespace channelstrip::host {

// What a strip's meters showed from first to last, linear. The end of the stream is rounded up to a
// whole block: up to 15 samples of silence behind it count, and what the filters then still ring.
struct StripMeters {
  std::vector<float> input_peak;   // per channel
  std::vector<float> output_peak;  // per channel
  std::vector<float> least_gain;   // per channel; least of the windows' greatest gains, 1 or below
  float compressor_reduction = 0;  // 1 - least factor
  float expander_reduction = 0;    // 1 - least factor

  bool operator==(const StripMeters&) const = default;
};

// Frames are interleaved. They pass the library on a fixed grid, whose remainder is carried from
// one call of process to the next, so that neither the output nor the meters depend on how the
// caller cuts the stream.
class StripStream {
 public:
  // Frames. What an observer sees of the meters, and the pace at which settings change.
  static constexpr std::size_t kPeriod = 64;
  // Frames, whole periods. A reduction that lasts for a window is sure to show in least_gain.
  static constexpr std::size_t kWindow = 256;

  // New targets from the period on that `frame` lies in; of several in a period the last.
  struct Change {
    std::uint64_t frame;
    StripCoefficients coefficients;
  };

  // Dynamics that are enabled to detect from a key do. `changes` stand in order of their frames;
  // the stream starts, without a glide, where those of its first period lead. The library must
  // outlive the stream. Throws std::invalid_argument where no split holds all link maps.
  StripStream(const Library& library, const StemFormat& format,
              const StripCoefficients& coefficients, std::vector<Change> changes = {});

  // Appends to `output` what is complete; a whole number of frames goes in and comes out. `key` is
  // the key channel, a sample per frame; what it lacks is silence.
  void process(std::span<const float> frames, std::span<const float> key,
               std::vector<float>& output);
  void process(std::span<const float> frames, std::vector<float>& output) {
    process(frames, {}, output);
  }

  // Appends the rest: as many frames have then come out as went in. Nothing may follow.
  void finish(std::vector<float>& output);

  const StripMeters& meters() const { return meters_; }

  // Called after every period, the last one may be shorter, with what the meters showed in it.
  void observe(std::function<void(const MeterReading&)> observer) {
    observer_ = std::move(observer);
  }

 private:
  void run(std::vector<float>& output);
  std::size_t call_from(std::size_t begin);
  void call(std::size_t begin, std::size_t end);
  void read_meters();
  void end_window();

  StripSet strips_;
  std::size_t channels_;
  bool keyed_;
  std::size_t pending_ = 0;     // frames waiting in inputs_
  std::uint64_t position_ = 0;  // of the first of them
  // A window per channel, the key's after the others. Apart from each other: the input meter reads
  // the inputs after the outputs are written.
  std::vector<float> inputs_, outputs_;
  std::vector<const float*> input_pointers_;
  std::vector<float*> output_pointers_;
  std::vector<Change> changes_;
  std::size_t next_change_ = 0;
  StripMeters meters_;
  std::vector<float> window_gain_;  // per channel, greatest since the window began
  std::function<void(const MeterReading&)> observer_;
};

}  // namespace channelstrip::host
