// The greatest momentary or short-term loudness of a stream, from the loudness of short steps.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <vector>

namespace channelstrip::host {

class GreatestLoudness {
 public:
  // `steps` in a row are measured together.
  explicit GreatestLoudness(std::size_t steps) : powers_(steps) {}

  // The loudness of the next step, LUFS, -infinity for silence.
  void add(double loudness) {
    powers_[count_++ % powers_.size()] = std::pow(10, loudness / 10);
    if (count_ < powers_.size()) return;
    const double sum = std::accumulate(powers_.begin(), powers_.end(), 0.0);
    greatest_ = std::max(greatest_, sum / static_cast<double>(powers_.size()));
  }

  // None where there were too few steps, or nothing but silence.
  std::optional<double> loudness() const {
    return greatest_ > 0 ? std::optional(10 * std::log10(greatest_)) : std::nullopt;
  }

 private:
  std::vector<double> powers_;  // of the latest steps, 1 at 0 LUFS
  std::size_t count_ = 0;
  double greatest_ = 0;
};

}  // namespace channelstrip::host
