// Runs a strip over a stream of any length, given in pieces of any size.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "../design/channel_layout.h"
#include "../library/library.h"
#include "instance.h"
#include "live_strip.h"

namespace channelstrip::host {

// What a strip's meters showed over the whole stream, linear: input peaks behind the input gain,
// output peaks behind mix and output gain, and of the gain what the dynamics did. The stream is
// rounded up to a whole block: up to 15 samples of silence at its end count too, with what still
// rings in the filters.
struct StripMeters {
  std::vector<float> input_peak;   // per channel
  std::vector<float> output_peak;  // per channel
  std::vector<float> least_gain;   // per channel; least of the windows' greatest gains, 1 or below
  float compressor_reduction = 0;  // 1 - least factor
  float expander_reduction = 0;    // 1 - least factor

  bool operator==(const StripMeters&) const = default;
};

// Frames are interleaved and processed on a fixed grid of windows; frames that don't fill a window
// wait for the next call of process(). So neither the output nor the meters depend on how the
// caller cuts the stream.
class StripStream {
 public:
  // Frames. An observer gets the meters once per period, and settings change only between periods.
  static constexpr std::size_t kPeriod = 64;
  // Frames, a multiple of kPeriod. A reduction shows in least_gain if it lasts for a whole window
  // of the grid.
  static constexpr std::size_t kWindow = 256;

  // New targets from the beginning of the period that contains `frame`. Of several changes in one
  // period the last counts.
  struct Change {
    std::uint64_t frame;
    StripSettings settings;
  };

  // Settings that enable the key detect from it. `changes` are in order of their frames; those in
  // the first period apply from the beginning, without a glide. The library must outlive the
  // stream. Throws std::invalid_argument for settings to begin with that no strip can have; those
  // of later changes must be possible, see ../design/possible.h.
  StripStream(const Library& library, const ChannelLayout& layout, double sample_rate,
              const StripSettings& settings, std::vector<Change> changes = {});

  // Takes a whole number of frames and appends those that are complete to `output`. `key` is the
  // key channel, one sample per frame; missing samples count as silence.
  void process(std::span<const float> frames, std::span<const float> key,
               std::vector<float>& output);
  void process(std::span<const float> frames, std::vector<float>& output) {
    process(frames, {}, output);
  }

  // Appends the rest: as many frames have then come out as went in. Nothing may follow.
  void finish(std::vector<float>& output);

  const StripMeters& meters() const { return meters_; }

  // `observer` is called after every period with what the meters showed in it; the last period may
  // be shorter.
  void observe(std::function<void(const MeterReading&)> observer) {
    observer_ = std::move(observer);
  }

 private:
  void run(std::vector<float>& output);
  std::size_t call_from(std::size_t begin);
  void call(std::size_t begin, std::size_t end);
  void read_meters();

  std::unique_ptr<const ChannelLayout> layout_;  // both stay where they are when this is moved
  std::unique_ptr<LiveStrip> strip_;
  std::size_t channels_;
  bool keyed_;
  std::size_t pending_ = 0;     // frames waiting in inputs_
  std::uint64_t position_ = 0;  // of the first of them
  // One window per channel, the key's last.
  std::vector<float> inputs_, outputs_;
  std::vector<const float*> input_pointers_;
  std::vector<float*> output_pointers_;
  std::vector<Change> changes_;
  std::size_t next_change_ = 0;
  StripMeters meters_;
  std::function<void(const MeterReading&)> observer_;
};

}  // namespace channelstrip::host
