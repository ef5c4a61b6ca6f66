#include "loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>

#include "ebur128_meter.h"
#include "greatest_loudness.h"
#include "true_peak.h"

namespace channelstrip::host {
namespace {

constexpr int kMeasures = EBUR128_MODE_I | EBUR128_MODE_LRA;

// Steps of 0.1 s.
constexpr std::size_t kMomentary = 4, kShortTerm = 30;

// libebur128 returns -infinity where the gate leaves nothing to measure.
std::optional<double> if_finite(double value) {
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

}  // namespace

struct LoudnessMeter::State {
  Ebur128 meter;
  TruePeakMeter true_peak;
  std::size_t frames_per_step = 0;
  std::size_t frames = 0;  // so far
  GreatestLoudness momentary{kMomentary}, short_term{kShortTerm};

  // libebur128 would sum 0.4 s and 3 s anew at every step.
  void end_step() {
    const double loudness = step_loudness(*meter);
    momentary.add(loudness);
    short_term.add(loudness);
  }
};

LoudnessMeter::LoudnessMeter(double sample_rate, const ChannelLayout& layout)
    : state_(new State{.meter = open_ebur128(sample_rate, layout, kMeasures),
                       .true_peak = TruePeakMeter(sample_rate, layout.labels.size())}) {
  state_->frames_per_step = state_->meter->samplerate / 10;  // as step_loudness() rounds
}

LoudnessMeter::~LoudnessMeter() = default;
LoudnessMeter::LoudnessMeter(LoudnessMeter&&) noexcept = default;

void LoudnessMeter::add(std::span<const float> frames) {
  State& state = *state_;
  const std::size_t channels = state.meter->channels;
  state.true_peak.add(frames);
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
  result.momentary = state_->momentary.loudness();
  result.short_term = state_->short_term.loudness();
  double value = 0;
  ebur128_loudness_global(meter, &value);
  result.integrated = if_finite(value);
  ebur128_loudness_range(meter, &value);
  if (result.short_term && result.integrated) result.range = value;
  for (std::size_t c = 0; c < meter->channels; ++c) {
    result.true_peak.push_back(state_->true_peak.peak(c));
  }
  return result;
}

}  // namespace channelstrip::host
