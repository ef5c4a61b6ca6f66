#include "comparison.h"

#include <algorithm>
#include <cmath>

namespace channelstrip::host {
namespace {

// Allows for rounding to single precision, in which samples are compared: at most this much, at
// full scale.
constexpr double kRounding = 0x1p-24;

}  // namespace

Comparison::Comparison(const AudioFormat& format) {
  const int bits = integer_bits(format);
  const bool exact =
      format.sample_type == SF_FORMAT_FLOAT || format.sample_type == SF_FORMAT_DOUBLE;
  if (bits > 0) step_ = std::ldexp(1.0, 1 - bits);
  coded_ = bits == 0 && !exact;
}

void Comparison::add(std::span<const float> expected, std::span<const float> actual) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    auto value = static_cast<double>(expected[i]);
    if (step_ > 0) value = std::clamp(value, -1.0, 1.0 - step_);
    greatest_ = std::max(greatest_, std::abs(value - static_cast<double>(actual[i])));
  }
}

Verdict Comparison::verdict() const {
  if (greatest_ == 0) return Verdict::kIdentical;
  if (coded_) return Verdict::kCoded;
  if (step_ > 0 && greatest_ <= 0.5 * step_ + kRounding) return Verdict::kRounded;
  if (step_ > 0 && greatest_ <= 1.5 * step_ + kRounding) return Verdict::kDithered;
  return Verdict::kDifferent;
}

}  // namespace channelstrip::host
