// From a strip's meters and latest samples to what the picture shows of them.

#pragma once

#include <channelstrip/channelstrip.h>

#include <array>
#include <vector>

#include "../held_level.h"
#include "../sample_ring.h"
#include "model.h"
#include "spectrum.h"

namespace channelstrip::view {

// All functions are one thread's, which draws. They throw nothing but std::bad_alloc.
class Monitor {
 public:
  Monitor(std::uint32_t channels, double sample_rate);

  // `seconds` later. What the strip's meters say since then; null if they say nothing new.
  void advance(double seconds, const channelstrip_meters* news, const Setup& setup);
  // What is in the rings now, of as many channels; of rings in which nothing is written, silence.
  void analyse(double seconds, const plugins::SampleRing& inputs,
               const plugins::SampleRing& outputs);
  // Forgets holds and overs.
  void clear_holds();

  const Live& live() const { return live_; }
  Live& live() { return live_; }

 private:
  struct Held {
    plugins::HeldLevel level{-120, 24};
    double age = 0;  // s, of the hold
  };
  void show(ChannelMeter& meter, Held& held, float peak, double seconds);
  void follow_gate(const Setup& setup);
  void remember(double seconds);

  std::uint32_t channels_;
  Live live_;
  std::array<Held, CHANNELSTRIP_MOST_CHANNELS> inputs_, outputs_;
  plugins::HeldLevel compressor_{0, 60}, expander_{0, 60};
  Moment moment_;            // since the last one in the history
  double moment_age_ = 0;    // s
  bool has_moment_ = false;  // something came since then
  SpectrumAnalyser analyser_;
  std::vector<float> samples_;
  bool is_analysed_ = false;
  std::uint64_t analysed_ = 0;           // how many frames there were
  double no_samples_ = 0, no_news_ = 0;  // s
};

}  // namespace channelstrip::view
