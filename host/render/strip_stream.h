// A strip over a stream of any length, cut any way.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

#include <array>
#include <span>
#include <vector>

#include "../instance.h"

namespace channelstrip::host {

// What a strip's meters showed from first to last, linear. The end of the stream is rounded up to a
// whole block: up to 15 samples of silence behind it count, and what the filters then still ring.
struct StripMeters {
  std::vector<float> input_peak;   // per channel
  std::vector<float> output_peak;  // per channel
  std::vector<float> least_gain;   // per channel; least of the periods' greatest gains, 1 or below
  float compressor_reduction = 0;  // 1 - least factor
  float expander_reduction = 0;    // 1 - least factor

  bool operator==(const StripMeters&) const = default;
};

// Frames are interleaved. The library is called on a fixed grid of periods, whose remainder is
// carried from one call of process to the next, so that neither the output nor the meters depend on
// how the caller cuts the stream.
class StripStream {
 public:
  static constexpr std::size_t kPeriod = 64;  // frames per call of the library

  StripStream(AlgEntry_16_Stem* entry_point, const StemFormat& format,
              const StripCoefficients& coefficients);

  // Appends to `output` what is complete; a whole number of frames goes in and comes out.
  void process(std::span<const float> frames, std::vector<float>& output);

  // Appends the rest: as many frames have then come out as went in. Nothing may follow.
  void finish(std::vector<float>& output);

  const StripMeters& meters() const { return meters_; }

 private:
  using Buffer = std::array<float, kPeriod>;

  void run(std::vector<float>& output);
  void read_meters();

  AlgEntry_16_Stem* entry_point_;
  Instance instance_;
  std::size_t channels_;
  std::size_t pending_ = 0;  // frames waiting in inputs_
  // Apart from each other: the input meter reads the inputs after the outputs are written.
  std::vector<Buffer> inputs_, outputs_;
  std::vector<const float*> input_pointers_;
  std::vector<float*> output_pointers_;
  StripMeters meters_;
};

}  // namespace channelstrip::host
