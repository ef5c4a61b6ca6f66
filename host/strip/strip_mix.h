// What goes on around the strips of a stream: a gain before them, a cross-fade between what went in
// and what came out, and a gain after that.
//
//   x = gain_in * input        y = strip(x)        output = gain_out * ((1 - mix) * x + mix * y)
//
// With a mix of 1 the output is exactly gain_out * y, with 0 exactly gain_out * x whatever y is,
// and a gain of 1 changes no bit. The strips have no latency, so x and y belong together.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "../design/strip_coefficients.h"

namespace channelstrip::host {

// A value on its way to a target, a step of one pole per sample, that gets there in the end.
class Glide {
 public:
  explicit Glide(double value) : value_(value), target_(value) {}

  void set(double target, double weight) {
    target_ = target;
    weight_ = weight;
  }

  // The next values, one per sample.
  void next(std::span<float> values);

 private:
  double value_, target_, weight_ = 1;
};

class StripMix {
 public:
  // Starts without a glide. Of the `inputs` the first `channels` are the audio, the key may follow;
  // no call has more than `frames` frames.
  StripMix(const MixCoefficients& coefficients, std::size_t inputs, std::size_t channels,
           std::size_t frames);

  // Sets new targets.
  void set(const MixCoefficients& coefficients);

  // What the strips take in place of `inputs`: buffers of `frames` frames, rounded up to whole
  // blocks of 16, as those of StripSet::process(). Valid until the next call.
  std::span<const float* const> enter(std::span<const float* const> inputs, std::size_t frames);

  // Turns what the strips have made of that into the outputs.
  void leave(std::span<const float* const> inputs, std::span<float* const> outputs,
             std::size_t frames);

  // The highest magnitudes of the outputs since the last reset, per channel. A view.
  std::span<const float> output_peak() const { return output_peak_; }
  void reset_meters();

 private:
  Glide gain_in_, gain_out_, mix_;
  bool bypass_ = false;
  std::size_t channels_, frames_;
  std::vector<float> trimmed_;        // a buffer per channel
  std::vector<float> gains_, mixes_;  // one per frame
  std::vector<const float*> strip_inputs_;
  std::vector<float> output_peak_;
};

}  // namespace channelstrip::host
