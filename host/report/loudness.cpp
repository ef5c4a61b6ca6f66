#include "loudness.h"

#include <ebur128.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace channelstrip::host {
namespace {

constexpr int kMeasures = EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_TRUE_PEAK;

constexpr std::array<std::pair<std::string_view, int>, 13> kSpeakers{{
    {"M", EBUR128_Mp000},
    {"L", EBUR128_Mp030},
    {"R", EBUR128_Mm030},
    {"C", EBUR128_Mp000},
    {"LFE", EBUR128_UNUSED},
    {"Ls", EBUR128_Mp110},
    {"Rs", EBUR128_Mm110},
    {"Lb", EBUR128_Mp135},
    {"Rb", EBUR128_Mm135},
    {"Lc", EBUR128_MpSC},
    {"Rc", EBUR128_MmSC},
    {"Cs", EBUR128_Mp180},
    {"S", EBUR128_Mp180},
}};

int position(std::string_view label, bool has_back_pair) {
  if (has_back_pair && label == "Ls") return EBUR128_Mp090;
  if (has_back_pair && label == "Rs") return EBUR128_Mm090;
  const auto found = std::ranges::find(kSpeakers, label, &decltype(kSpeakers)::value_type::first);
  return found == kSpeakers.end() ? int{EBUR128_Mp000} : found->second;
}

// libebur128 returns -infinity where the gate leaves nothing to measure.
std::optional<double> if_finite(double value) {
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

void hold_maximum(std::optional<double>& held, double value) {
  if (std::isfinite(value)) held = std::max(held.value_or(value), value);
}

}  // namespace

struct LoudnessMeter::State {
  struct Destroy {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
  };
  std::unique_ptr<ebur128_state, Destroy> meter;
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
  const auto rate = static_cast<unsigned long>(sample_rate);
  state_->meter.reset(ebur128_init(static_cast<unsigned>(layout.labels.size()), rate, kMeasures));
  if (!state_->meter) {
    throw std::invalid_argument(fmt::format("no loudness can be measured at {} Hz", sample_rate));
  }
  state_->frames_per_step = (rate + 5) / 10;
  const bool has_back_pair = std::ranges::find(layout.labels, "Lb") != layout.labels.end();
  for (unsigned c = 0; c < layout.labels.size(); ++c) {
    ebur128_set_channel(state_->meter.get(), c, position(layout.labels[c], has_back_pair));
  }
}

LoudnessMeter::~LoudnessMeter() = default;
LoudnessMeter::LoudnessMeter(LoudnessMeter&&) noexcept = default;

void LoudnessMeter::add(std::span<const float> frames) {
  State& state = *state_;
  const std::size_t channels = state.meter->channels;
  while (!frames.empty()) {
    const std::size_t to_step = state.frames_per_step - state.frames % state.frames_per_step;
    const std::size_t count = std::min(frames.size() / channels, to_step);
    if (ebur128_add_frames_float(state.meter.get(), frames.data(), count) != EBUR128_SUCCESS) {
      throw std::bad_alloc();
    }
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
