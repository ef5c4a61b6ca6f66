// The true peak: the highest magnitude of the signal between its samples, too (ITU-R BS.1770-4,
// annex 2).

#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace channelstrip::host {

// Oversamples four times below 96 kHz and twice below 192 kHz, with the filter of libebur128 (a
// sinc of 49 taps under a Hann window), and gives what that gives, to the bit, in a fraction of the
// time. As there, what would rise behind the last sample, while the filter fades, doesn't count.
// Pieces too quiet to hold the peak are passed over: a value between samples is at most the sum of
// the filter's magnitudes times the highest sample that it is made of.
class TruePeakMeter {
 public:
  TruePeakMeter(double sample_rate, std::size_t channels);

  // A whole number of interleaved frames.
  void add(std::span<const float> frames);

  // So far, linear, never below the highest sample; what isn't a number doesn't count.
  double peak(std::size_t channel) const { return static_cast<double>(channels_[channel].peak); }
  double peak() const;  // of any channel

 private:
  struct Channel {
    std::vector<double> samples;  // those before the next that a phase sees
    float peak = 0;
  };

  void add_piece(std::span<const float> frames, std::size_t channel);

  // Between the samples: coefficients, the one for the newest sample first. All have as many.
  std::vector<std::vector<double>> phases_;
  double most_gain_ = 1;  // greatest sum of a phase's magnitudes
  std::vector<Channel> channels_;
  std::vector<float> piece_, between_;  // a channel's samples, and outputs of a phase
};

}  // namespace channelstrip::host
