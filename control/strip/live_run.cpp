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

constexpr float kInfinite = std::numeric_limits<float>::infinity();

// Whether an output is the key or another channel's input.
bool are_crossed(const LiveStrip::Buffers& buffers, std::size_t channels) {
  for (std::size_t c = 0; c < channels; ++c) {
    const float *const input = buffers.inputs[c], *const output = buffers.outputs[c];
    if (output == buffers.key) return true;
    for (std::size_t i = 0; i < c; ++i) {
      if (output == buffers.inputs[i] || buffers.outputs[i] == input) return true;
    }
  }
  return false;
}

}  // namespace

void LiveStrip::run(const Buffers& buffers, std::size_t samples) {
  if (may_run_directly(buffers, samples)) {
    live_.process(buffers.inputs, buffers.key, buffers.outputs, samples);
  } else {
    for (std::size_t at = 0; at < samples; at += kChunk) {
      run_chunk(run_of(buffers, at, std::min(kChunk, samples - at)));
    }
  }
  finish_run(buffers, samples);
}

// Looks at the samples. The library reads its inputs as it goes and writes outputs in between, so
// an output may only be the input of its own channel.
bool LiveStrip::may_run_directly(const Buffers& buffers, std::size_t samples) {
  std::array<PeakLanes, kMostChannels> lanes;  // of the channels that there are
  PeakLanes all = PeakLanes::none();
  if (buffers.key) all.see(buffers.key, samples);
  for (std::size_t c = 0; c < channels_; ++c) {
    lanes[c] = PeakLanes::none();
    lanes[c].see(buffers.inputs[c], samples);
    all.see(lanes[c]);
  }
  bool is_clean = true;
  if (all.exceed(kHarmless)) {
    may_overflow_ = true;
    is_clean = all.peak() < kInfinite;  // false for NaN, too
  }
  const bool is_direct = is_idle_ && is_clean && !are_crossed(buffers, channels_);
  if (is_metering_) {
    meters_.begin(is_direct && !may_overflow_, live_);  // else what comes out is repaired
    for (std::size_t c = 0; c < channels_ && is_direct; ++c) meters_.see_input(c, lanes[c]);
  }
  return is_direct;
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
    if (is_metering_) {
      PeakLanes lanes = PeakLanes::none();
      lanes.see(in_[c].data(), run.samples);
      meters_.see_input(c, lanes);
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

void LiveStrip::finish_run(const Buffers& buffers, std::size_t samples) {
  if (may_overflow_) repair(buffers, samples);
  if (is_metering_) meters_.advance(buffers.outputs, samples, live_);
}

void LiveStrip::repair(const Buffers& buffers, std::size_t samples) {
  live_.repair();
  if (!fade_.is_done()) old_.repair();
  for (std::size_t c = 0; c < channels_; ++c) {
    float* const output = buffers.outputs[c];
    std::replace_if(
        output, output + samples, [](float sample) { return !std::isfinite(sample); }, 0.0f);
  }
}

}  // namespace channelstrip::host
