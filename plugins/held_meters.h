// A strip's meters as plugins show them: levels in dB that rise at once and fall slowly.

#pragma once

#include <channelstrip/channelstrip.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "held_level.h"

namespace channelstrip::plugins {

// The limits of the levels, in dB.
inline constexpr double kLeastPeak = -120, kGreatestPeak = 24, kGreatestReduction = 60;

class HeldMeters {
 public:
  HeldMeters() = default;
  HeldMeters(std::uint32_t channels, double sample_rate)
      : channels_(channels), sample_rate_(sample_rate) {}

  // Behind a call of `frames` frames: whether the levels were read anew, which they are every 1024
  // frames. Reading them in every call would take as long as a tenth of a short call's processing.
  bool advance(channelstrip_strip* strip, std::uint32_t frames) {
    unread_ += frames;
    if (unread_ < kPeriod) return false;
    if (unread_ != fall_frames_) {
      fall_frames_ = unread_;
      fall_ = HeldLevel::fall_in(static_cast<double>(unread_) / sample_rate_);
    }
    unread_ = 0;
    channelstrip_meters& read = read_;
    read = {};
    channelstrip_strip_read_meters(strip, &read, sizeof read, nullptr);
    for (std::uint32_t c = 0; c < channels_; ++c) {
      input_peaks_[c].see(static_cast<double>(read.input_peak[c]), fall_);
      output_peaks_[c].see(static_cast<double>(read.output_peak[c]), fall_);
    }
    compressor_.see(gain_of(read.compressor_reduction), fall_);
    expander_.see(gain_of(read.expander_reduction), fall_);
    return true;
  }

  // As they were read last.
  const channelstrip_meters& read() const { return read_; }
  float input_peak(std::uint32_t channel) const { return input_peaks_[channel].decibels(); }
  float output_peak(std::uint32_t channel) const { return output_peaks_[channel].decibels(); }
  // The greatest of any link group.
  float compressor_reduction() const { return compressor_.decibels(); }
  float expander_reduction() const { return expander_.decibels(); }

 private:
  static constexpr std::uint64_t kPeriod = 1024;
  using Peaks = std::array<HeldLevel, CHANNELSTRIP_MOST_CHANNELS>;
  static Peaks no_peaks() {
    Peaks peaks;
    peaks.fill({kLeastPeak, kGreatestPeak});
    return peaks;
  }

  // What would make up for a reduction.
  static double gain_of(float reduction) {
    return reduction < 1 ? 1 / (1 - static_cast<double>(reduction))
                         : std::numeric_limits<double>::infinity();
  }

  std::uint32_t channels_ = 0;
  double sample_rate_ = 1;
  std::uint64_t unread_ = 0;       // frames
  std::uint64_t fall_frames_ = 0;  // that fall_ is for
  HeldLevel::Fall fall_ = {};
  Peaks input_peaks_ = no_peaks(), output_peaks_ = no_peaks();
  channelstrip_meters read_ = {};
  HeldLevel compressor_{0, kGreatestReduction}, expander_{0, kGreatestReduction};
};

}  // namespace channelstrip::plugins
