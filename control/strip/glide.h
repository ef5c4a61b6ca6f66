// Values that change without a jump.

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace channelstrip::host {

// A value on its way to a target, a step of one pole per sample, that gets there in the end.
class Glide {
 public:
  explicit Glide(double value) : value_(value), target_(value) {}

  void set(double target, double weight) {
    target_ = target;
    weight_ = weight;
  }
  void finish() { value_ = target_; }

  bool rests_at(double value) const { return value_ == value && target_ == value; }

  // The next values, one per sample.
  void next(std::span<float> values) {
    std::size_t i = 0;
    for (; i < values.size() && value_ != target_; ++i) {
      value_ += weight_ * (target_ - value_);
      if (std::abs(target_ - value_) < kNear) value_ = target_;
      values[i] = static_cast<float>(value_);
    }
    std::ranges::fill(values.subspan(i), static_cast<float>(value_));
  }

 private:
  // A glide this near its target ends: 120 dB below full scale nobody hears the last step.
  static constexpr double kNear = 1e-6;

  double value_, target_, weight_ = 1;
};

// From 0 to 1 along a straight line.
class Ramp {
 public:
  void start(std::size_t samples) { length_ = left_ = samples; }
  void finish() { left_ = 0; }

  bool is_done() const { return left_ == 0; }
  std::size_t left() const { return left_; }

  // The next value; 1 at the end of the line.
  float next() {
    if (left_ > 0) --left_;
    return left_ == 0 ? 1.0f : 1 - static_cast<float>(left_) / static_cast<float>(length_);
  }

 private:
  std::size_t length_ = 1, left_ = 0;
};

}  // namespace channelstrip::host
