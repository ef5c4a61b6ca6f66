#include "monitor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace channelstrip::view {
namespace {

constexpr double kHoldSeconds = 3;
constexpr double kStandstill = 0.5;  // s without anything new: the host doesn't run the strip

float decibels_of(float linear) {
  return linear > 0 ? std::max(kSilence, 20 * std::log10(linear)) : kSilence;
}

// What would make up for a reduction.
double inverse_of(float reduction) {
  return reduction < 1 ? 1 / (1 - static_cast<double>(reduction))
                       : std::numeric_limits<double>::infinity();
}

}  // namespace

Monitor::Monitor(std::uint32_t channels, double sample_rate)
    : channels_(channels), analyser_(sample_rate), samples_(analyser_.frames()) {
  live_.input_spectrum.fill(kSilence);
  live_.output_spectrum.fill(kSilence);
}

void Monitor::show(ChannelMeter& meter, Held& held, float peak, double seconds) {
  held.level.see(static_cast<double>(peak), plugins::HeldLevel::fall_in(seconds));
  meter.level = held.level.decibels();
  held.age += seconds;
  if (meter.level >= meter.hold || held.age > kHoldSeconds) {
    meter.hold = meter.level;
    held.age = 0;
  }
}

void Monitor::advance(double seconds, const channelstrip_meters* news, const Setup& setup) {
  static constexpr channelstrip_meters kNone{};
  const channelstrip_meters& meters = news ? *news : kNone;
  for (std::size_t c = 0; c < channels_; ++c) {
    show(live_.inputs[c], inputs_[c], meters.input_peak[c], seconds);
    show(live_.outputs[c], outputs_[c], meters.output_peak[c], seconds);
    live_.outputs[c].overs += meters.overs[c];
    moment_.input = std::max(moment_.input, decibels_of(meters.input_peak[c]));
    moment_.output = std::max(moment_.output, decibels_of(meters.output_peak[c]));
    if (!news) continue;
    live_.dynamics[c] = {.detector = decibels_of(meters.detector_level[c]),
                         .compressor = meters.compressor_gain[c],
                         .expander = meters.expander_gain[c]};
  }
  // Where nothing runs there is no level.
  no_news_ = news ? 0 : no_news_ + seconds;
  if (no_news_ > kStandstill) {
    for (ChannelDynamics& each : live_.dynamics) each = {};
  }
  const auto fall = plugins::HeldLevel::fall_in(seconds);
  const double compressor = inverse_of(meters.compressor_reduction);
  const double expander = inverse_of(meters.expander_reduction);
  compressor_.see(compressor, fall);
  expander_.see(expander, fall);
  live_.compressor = -compressor_.decibels();
  live_.expander = -expander_.decibels();
  if (news) {
    has_moment_ = true;
    const auto gain = [](double inverse) {
      return static_cast<float>(-20 * std::log10(std::min(inverse, 1e6)));
    };
    moment_.compressor = std::min(moment_.compressor, gain(compressor));
    moment_.expander = std::min(moment_.expander, gain(expander));
    follow_gate(setup);
  }
  remember(seconds);
}

// A gate opens where a level rises above its threshold, and begins to shut, after its hold, where
// it has fallen below that by the hysteresis.
void Monitor::follow_gate(const Setup& setup) {
  const Parameters& p = parameters();
  const double threshold = setup.values[p.expander.threshold];
  const double lower = threshold - setup.values[p.expander.hysteresis];
  constexpr float kUnmoved = -0.5f;  // dB
  const ChannelDynamics& loudest =
      *std::max_element(live_.dynamics.begin(), live_.dynamics.begin() + channels_,
                        [](auto& a, auto& b) { return a.detector < b.detector; });
  const auto level = static_cast<double>(loudest.detector);
  if (level >= threshold) {
    live_.gate = GateState::kOpen;
  } else if (live_.gate != GateState::kClosed) {
    live_.gate = level >= lower                 ? GateState::kOpen
                 : loudest.expander >= kUnmoved ? GateState::kHeld
                                                : GateState::kClosed;
  }
}

void Monitor::remember(double seconds) {
  constexpr double kStep = kHistorySeconds / (kHistoryMoments - 1);
  moment_age_ += std::min(seconds, kHistorySeconds);
  const double steps = std::floor(moment_age_ / kStep);
  moment_age_ -= steps * kStep;
  for (int n = 0; n < static_cast<int>(steps); ++n) {
    // Readings come every 1024 frames, which may be longer than a step.
    const bool is_between = !has_moment_ && no_news_ <= kStandstill && !live_.history.empty();
    live_.history.push_back(is_between ? Moment(live_.history.back()) : moment_);
    has_moment_ = false;
    moment_ = {};
  }
  if (live_.history.size() > kHistoryMoments) {
    live_.history.erase(live_.history.begin(), live_.history.end() - kHistoryMoments);
  }
}

void Monitor::analyse(double seconds, const plugins::SampleRing& inputs,
                      const plugins::SampleRing& outputs) {
  const std::uint64_t written = outputs.written();
  no_samples_ = written == analysed_ ? no_samples_ + seconds : 0;
  analysed_ = written;
  if (no_samples_ > kStandstill) {
    Spectrum silence;
    silence.fill(kSilence);
    follow(live_.input_spectrum, silence, seconds);
    follow(live_.output_spectrum, silence, seconds);
    return;
  }
  const auto show_spectrum = [&](Spectrum& shown, const plugins::SampleRing& ring) {
    analyser_.clear();
    for (std::uint32_t c = 0; c < channels_; ++c) {
      if (!ring.read(c, samples_)) return;
      analyser_.add(samples_);
    }
    follow(shown, analyser_.levels(), is_analysed_ ? seconds : 10);
  };
  show_spectrum(live_.input_spectrum, inputs);
  show_spectrum(live_.output_spectrum, outputs);
  is_analysed_ = live_.has_spectrum = true;
}

void Monitor::clear_holds() {
  for (std::uint32_t c = 0; c < channels_; ++c) {
    for (ChannelMeter* meter : {&live_.inputs[c], &live_.outputs[c]}) {
      meter->hold = meter->level;
      meter->overs = 0;
    }
  }
}

}  // namespace channelstrip::view
