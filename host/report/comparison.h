// Checks whether a file is what a strip gives.

#pragma once

#include <span>

#include "../audio/audio_format.h"

namespace channelstrip::host {

enum class Verdict {
  kIdentical,  // every sample
  kRounded,    // to the file's bits: no sample is off by more than half a step
  kDithered,   // off by more than that, but no more than dither of one step up and down explains
  kCoded,      // can't be told, because the sample type is lossy
  kDifferent
};

// Compares what the strip gives with a file of `format`, sample by sample. Above full scale integer
// samples are expected to be clamped.
class Comparison {
 public:
  explicit Comparison(const AudioFormat& format);

  // Both of the same length.
  void add(std::span<const float> expected, std::span<const float> actual);

  Verdict verdict() const;
  double greatest() const { return greatest_; }  // difference, linear
  double step() const { return step_; }          // of integer samples, linear; 0 for other types

 private:
  double step_ = 0;
  bool coded_ = false;
  double greatest_ = 0;
};

}  // namespace channelstrip::host
