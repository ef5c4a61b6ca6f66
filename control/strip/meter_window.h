// Collects what a strip's meters show, on a fixed grid of windows of the stream.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine.h"
#include "live_meters.h"
#include "peak.h"

namespace channelstrip::host {

// The library keeps extremes by itself, which are read when a window ends or someone asks.
class MeterWindow {
 public:
  MeterWindow(std::size_t channels, std::size_t samples) : channels_(channels), length_(samples) {}

  // How many samples there are to the end of the window.
  std::size_t left() const { return length_ - samples_; }
  // Whether a window has ended since the last call of clear().
  bool has_news() const { return has_news_; }

  // In place, the inputs before the run.
  void see_inputs(const std::array<PeakLanes, kMostChannels>& inputs) {
    for (std::size_t c = 0; c < channels_; ++c) input_[c].see(inputs[c]);
  }
  void see_not_finite() { ++meters_.not_finite; }

  // Before a run of the engine: whether its outputs are the strip's (direct) or go on from there,
  // and whether they stand where its inputs did. In place the engine can't meter its inputs.
  void begin(bool is_direct, bool is_in_place, Engine& engine) {
    if (is_direct != is_direct_ || is_in_place != is_in_place_) read(engine);
    is_direct_ = is_direct;
    is_in_place_ = is_in_place;
  }
  // After the run, with what came out of the strip.
  void advance(const float* const* outputs, std::size_t samples, Engine& engine) {
    // Where the engine's peaks are those of the outputs, samples needn't be looked at before one of
    // the window has been beyond full scale.
    if (!is_direct_ || engine.has_been_over()) see_outputs(outputs, samples, engine);
    samples_ += samples;
    unread_ += samples;
    if (samples_ == length_) end(engine);
  }

  // Ends the window, as if it were whole. Nothing if it is empty.
  void end(Engine& engine);

  // What happened since the last call of clear().
  const LiveMeters& collected(Engine& engine) {
    read(engine);
    return meters_;
  }
  void clear();

  // Adds what the engine's meters show, which begin anew.
  void read(Engine& engine);

 private:
  void see_outputs(const float* const* outputs, std::size_t samples, const Engine& engine);

  // Every call needs these; the rest is needed once in a window.
  std::size_t channels_, length_;
  std::size_t samples_ = 0;  // of the window
  std::size_t unread_ = 0;   // since the engine's meters were read
  bool has_news_ = false;
  bool is_direct_ = true;
  bool is_in_place_ = false;
  // In place, since the engine's meters were read.
  std::array<PeakLanes, kMostChannels> input_ = {};
  std::array<float, kMostChannels> window_gain_ = {};
  LiveMeters meters_;
};

}  // namespace channelstrip::host
