#include "loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>

#include "ebur128_meter.h"

namespace channelstrip::host {
namespace {

constexpr int kMeasures = EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_TRUE_PEAK;

// libebur128 returns -infinity where the gate leaves nothing to measure.
std::optional<double> if_finite(double value) {
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

void hold_maximum(std::optional<double>& held, double value) {
  if (std::isfinite(value)) held = std::max(held.value_or(value), value);
}

}  // namespace

struct LoudnessMeter::State {
  Ebur128 meter;
  std::size_t frames_per_step = 0;  // 0.1 s: how often both maxima are updated
  std::size_t frames = 0;           // so far
  std::optional<double> momentary = {}, short_term = {};

  void end_step() {
    double loudness = 0;
    if (frames >= 4 * frames_per_step) {
      ebur128_loudness_momentary(meter.get(), &loudness);
      hold_maximum(momentary, loudness);
    }
    if (frames >= 30 * frames_per_step) {
      ebur128_loudness_shortterm(meter.get(), &loudness);
      hold_maximum(short_term, loudness);
    }
  }
};

LoudnessMeter::LoudnessMeter(double sample_rate, const ChannelLayout& layout)
    : state_(std::make_unique<State>()) {
  state_->meter = open_ebur128(sample_rate, layout, kMeasures);
  state_->frames_per_step = frames_per_step(*state_->meter);
}

LoudnessMeter::~LoudnessMeter() = default;
LoudnessMeter::LoudnessMeter(LoudnessMeter&&) noexcept = default;

void LoudnessMeter::add(std::span<const float> frames) {
  State& state = *state_;
  const std::size_t channels = state.meter->channels;
  while (!frames.empty()) {
    const std::size_t to_step = state.frames_per_step - state.frames % state.frames_per_step;
    const std::size_t count = std::min(frames.size() / channels, to_step);
    add_frames(*state.meter, frames.first(count * channels));
    frames = frames.subspan(count * channels);
    state.frames += count;
    if (count == to_step) state.end_step();
  }
}

Loudness LoudnessMeter::loudness() const {
  ebur128_state* meter = state_->meter.get();
  Loudness result;
  result.momentary = state_->momentary;
  result.short_term = state_->short_term;
  double value = 0;
  ebur128_loudness_global(meter, &value);
  result.integrated = if_finite(value);
  ebur128_loudness_range(meter, &value);
  if (state_->short_term && result.integrated) result.range = value;
  for (unsigned c = 0; c < meter->channels; ++c) {
    ebur128_true_peak(meter, c, &value);
    result.true_peak.push_back(value);
  }
  return result;
}

}  // namespace channelstrip::host
