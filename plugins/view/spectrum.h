// A stream's spectrum as displays show it: the level of a sixth of an octave around each frequency,
// so that a sine of full scale is at 0 dB and pink noise is a horizontal line.

#pragma once

#include <memory>
#include <span>
#include <vector>

#include "model.h"

namespace channelstrip::view {

class SpectrumAnalyser {
 public:
  // Throws std::bad_alloc.
  explicit SpectrumAnalyser(double sample_rate);
  SpectrumAnalyser(const SpectrumAnalyser&) = delete;
  SpectrumAnalyser& operator=(const SpectrumAnalyser&) = delete;
  ~SpectrumAnalyser();

  // How many frames it takes: a power of two, at least a sixth of a second.
  std::size_t frames() const { return window_.size(); }

  // The louder of the channels that were added since clear() counts at each frequency.
  void clear();
  void add(std::span<const float> samples);  // frames() of them
  Spectrum levels() const;

 private:
  struct Transform;
  double sample_rate_;
  std::vector<float> window_;
  std::vector<double> powers_;  // |X|^2 for each bin
  std::unique_ptr<Transform> transform_;
};

// One step of a display: rises in a twentieth of a second, falls by 24 dB in one.
void follow(Spectrum& shown, const Spectrum& now, double seconds);

}  // namespace channelstrip::view
