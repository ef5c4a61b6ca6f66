// What goes on around the library's strip: a gain before it, a cross-fade between what went in and
// what came out, a gain after that, and bypass, which leaves out all of it.
//
//   x = gain_in * input        y = strip(x)
//   output = (1 - processed) * input + processed * gain_out * ((1 - mix) * x + mix * y)
//
// A share of exactly 0 or 1 takes exactly one of the two, and a gain of 1 changes no bit.

#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "../design/strip_coefficients.h"
#include "glide.h"

namespace channelstrip::host {

// A cross-fade between two; with a share of 0 or 1 exactly one of them.
inline float mixed(float dry, float wet, float share) {
  const float both = (1 - share) * dry + share * wet;
  return share == 0 ? dry : share == 1 ? wet : both;
}

class StripGains {
 public:
  static constexpr std::size_t kMost = 64;  // samples at a time

  // Starts without a glide.
  explicit StripGains(const MixCoefficients& mix)
      : gain_in_(mix.gain_in),
        gain_out_(mix.gain_out),
        mix_(mix.mix),
        processed_(mix.bypass ? 0 : 1) {}

  // Sets new targets.
  void set(const MixCoefficients& mix) {
    gain_in_.set(mix.gain_in, mix.weight);
    gain_out_.set(mix.gain_out, mix.weight);
    mix_.set(mix.mix, mix.weight);
    processed_.set(mix.bypass ? 0 : 1, mix.weight);
  }
  void finish() {
    for (Glide* glide : {&gain_in_, &gain_out_, &mix_, &processed_}) glide->finish();
  }

  // Whether the output is what the strip makes of the input, and stays that.
  bool are_neutral() const {
    return gain_in_.rests_at(1) && gain_out_.rests_at(1) && mix_.rests_at(1) &&
           processed_.rests_at(1);
  }

  // Values for the next samples, of all channels. `count` is at most kMost.
  void advance(std::size_t count) {
    gain_in_.next(std::span(in_).first(count));
    gain_out_.next(std::span(out_).first(count));
    mix_.next(std::span(wet_).first(count));
    processed_.next(std::span(shares_).first(count));
  }
  // x before the strip, from sample i of the input.
  float before(std::size_t i, float input) const { return in_[i] * input; }
  float after(std::size_t i, float input, float x, float y) const {
    return mixed(input, out_[i] * mixed(x, y, wet_[i]), shares_[i]);
  }

 private:
  Glide gain_in_, gain_out_, mix_;
  Glide processed_;                                                       // 1; 0 where bypassed
  std::array<float, kMost> in_ = {}, out_ = {}, wet_ = {}, shares_ = {};  // of advance()
};

}  // namespace channelstrip::host
