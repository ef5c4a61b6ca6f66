// How a strip runs whole blocks: straight through the library, or a copy of them through gains and
// cross-fades.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "live_strip.h"
#include "peak.h"

namespace channelstrip::host {
namespace {

// Inputs up to this can't overflow anything: eight bands at +40 dB and a Q of 100 stay below 1e24
// of their input's peak, and the gains in, out and of the makeup multiply that by 1e11 at most.
constexpr float kHarmless = 1e3f;

}  // namespace

// Everything inlined: of a mono strip's short call every function takes a third of a percent.
[[gnu::flatten]] void LiveStrip::run(const Buffers& buffers, std::size_t samples) {
  if (may_run_directly(buffers, samples)) {
    live_.process(buffers.inputs, buffers.key, buffers.outputs, samples);
  } else {
    for (std::size_t at = 0; at < samples; at += kChunk) {
      run_chunk(run_of(buffers, at, std::min(kChunk, samples - at)));
    }
  }
  finish_run(buffers.outputs, samples);
}

// Looks at the samples. The library reads its inputs as it goes and writes outputs in between, so
// an output may only be the input of its own channel.
bool LiveStrip::may_run_directly(const Buffers& buffers, std::size_t samples) {
  const Sharing sharing = sharing_.of(buffers.inputs, buffers.key, buffers.outputs);
  if (is_idle_ && is_metering_ && sharing == Sharing::kInputs) {
    return may_run_in_place(buffers, samples);
  }
  LoudLanes loud;
  if (buffers.key) loud.see(buffers.key, samples);
  for (std::size_t c = 0; c < channels_; ++c) loud.see(buffers.inputs[c], samples);
  const bool is_clean = !loud.are_any() || are_finite(peaks_of(buffers, samples));
  const bool is_direct = is_idle_ && is_clean && sharing != Sharing::kCrossed;
  if (is_metering_) begin_metering(is_direct, false);
  return is_direct;
}

// The library can't meter inputs that it overwrites, so that their peaks are found here.
bool LiveStrip::may_run_in_place(const Buffers& buffers, std::size_t samples) {
  const Peaks peaks = peaks_of(buffers, samples);
  const bool is_clean = are_finite(peaks);
  begin_metering(is_clean, true);
  if (is_clean) meters_.see_inputs(peaks.inputs);
  return is_clean;
}

// Where something may overflow, what comes out is repaired, and metered behind that.
void LiveStrip::begin_metering(bool is_direct, bool is_in_place) {
  meters_.begin(is_direct && !may_overflow_, is_direct && is_in_place, live_);
}

LiveStrip::Peaks LiveStrip::peaks_of(const Buffers& buffers, std::size_t samples) const {
  Peaks peaks;
  if (buffers.key) peaks.all.see(buffers.key, samples);
  for (std::size_t c = 0; c < channels_; ++c) {
    peaks.inputs[c].see(buffers.inputs[c], samples);
    peaks.all.see(peaks.inputs[c]);
  }
  return peaks;
}

// Whether all inputs are numbers; notes whether they are great.
bool LiveStrip::are_finite(const Peaks& peaks) {
  if (!peaks.all.exceed(kHarmless)) return true;
  may_overflow_ = true;
  return !peaks.all.exceed(std::numeric_limits<float>::max());
}

// A copy of the inputs goes through the input gain and the strip, or both strips of a cross-fade.
void LiveStrip::run_chunk(const Run& run) {
  const auto cleaned = [&](float sample) {
    if (std::isfinite(sample)) return sample;
    if (is_metering_) meters_.see_not_finite();
    return 0.0f;
  };
  gains_.advance(run.samples);
  Run strip{.inputs = {}, .key = nullptr, .outputs = {}, .samples = run.samples};
  Run before = strip;
  for (std::size_t c = 0; c < channels_; ++c) {
    for (std::size_t i = 0; i < run.samples; ++i) {
      dry_[c][i] = cleaned(run.inputs[c][i]);
      in_[c][i] = gains_.before(i, dry_[c][i]);
    }
    strip.inputs[c] = before.inputs[c] = in_[c].data();
    strip.outputs[c] = wet_[c].data();
    before.outputs[c] = before_[c].data();
  }
  if (run.key) {
    std::transform(run.key, run.key + run.samples, key_.begin(), cleaned);
    strip.key = before.key = key_.data();
  }
  live_.process(strip.inputs.data(), strip.key, strip.outputs.data(), run.samples);
  if (!fade_.is_done()) {
    old_.process(before.inputs.data(), before.key, before.outputs.data(), run.samples);
    for (std::size_t i = 0; i < run.samples; ++i) {
      const float share = fade_.next();
      for (std::size_t c = 0; c < channels_; ++c) {
        wet_[c][i] = mixed(before_[c][i], wet_[c][i], share);
      }
    }
  }
  for (std::size_t c = 0; c < channels_; ++c) {
    for (std::size_t i = 0; i < run.samples; ++i) {
      run.outputs[c][i] = gains_.after(i, dry_[c][i], in_[c][i], wet_[c][i]);
    }
  }
}

void LiveStrip::finish_run(float* const* outputs, std::size_t samples) {
  if (may_overflow_) repair(outputs, samples);
  if (is_metering_) meters_.advance(outputs, samples, live_);
}

void LiveStrip::repair(float* const* outputs, std::size_t samples) {
  live_.repair();
  if (!fade_.is_done()) old_.repair();
  for (std::size_t c = 0; c < channels_; ++c) {
    std::replace_if(
        outputs[c], outputs[c] + samples, [](float sample) { return !std::isfinite(sample); },
        0.0f);
  }
}

}  // namespace channelstrip::host
