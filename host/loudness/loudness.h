// Loudness and true peak: ITU-R BS.1770, EBU R 128, EBU Tech 3341 and 3342, with libebur128.

#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "control/design/channel_layout.h"

namespace channelstrip::host {

// None where the stream is too short or, for integrated and range, all of it below the gate.
struct Loudness {
  std::optional<double> integrated;  // LUFS, from 0.4 s on
  std::optional<double> range;       // LU, from 3 s on
  std::optional<double> momentary;   // LUFS, the maximum over 0.4 s
  std::optional<double> short_term;  // LUFS, the maximum over 3 s
  std::vector<double> true_peak;     // per channel, linear, never below the highest sample
};

// Channels weigh as open_ebur128() says.
class LoudnessMeter {
 public:
  // Throws std::invalid_argument for a sample rate outside 16 to 2822400 Hz.
  LoudnessMeter(double sample_rate, const ChannelLayout& layout);
  ~LoudnessMeter();
  LoudnessMeter(LoudnessMeter&&) noexcept;
  LoudnessMeter& operator=(LoudnessMeter&&) = delete;

  // A whole number of interleaved frames.
  void add(std::span<const float> frames);

  Loudness loudness() const;

 private:
  struct State;

  std::unique_ptr<State> state_;
};

}  // namespace channelstrip::host
