#include "live_strip.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "denormals.h"
#include "peak.h"

namespace channelstrip::host {
namespace {

// Inputs up to this can't overflow anything: eight bands at +40 dB and a Q of 100 stay below 1e24
// of their input's peak, and the gains in, out and of the makeup multiply that by 1e11 at most.
constexpr float kHarmless = 1e3f;

constexpr float kInfinite = std::numeric_limits<float>::infinity();

// Whole blocks that take about two time constants of a glide.
std::size_t fade_length(const StripSettings& settings, double sample_rate) {
  return static_cast<std::size_t>(2 * settings.glide / 1000 * sample_rate / kBlock) * kBlock;
}

// Whether an output is the key or another channel's input. All pairs are counted, without a branch
// and in loops of a constant length, and those of the same channel taken off.
bool are_crossed(const LiveStrip::Buffers& buffers, std::size_t channels) {
  if (channels == 1) return buffers.key == buffers.outputs[0];
  std::array<std::uintptr_t, kMostChannels> inputs, outputs;
  inputs.fill(0);
  outputs.fill(1);
  for (std::size_t c = 0; c < channels; ++c) {
    inputs[c] = reinterpret_cast<std::uintptr_t>(buffers.inputs[c]);
    outputs[c] = reinterpret_cast<std::uintptr_t>(buffers.outputs[c]);
  }
  const auto key = reinterpret_cast<std::uintptr_t>(buffers.key);
  std::uintptr_t crossings = 0;
  for (const std::uintptr_t output : outputs) {
    for (const std::uintptr_t input : inputs) crossings += input == output;
  }
  for (std::size_t c = 0; c < kMostChannels; ++c) {
    crossings += (outputs[c] == key) - std::uintptr_t{inputs[c] == outputs[c]};
  }
  return crossings != 0;
}

}  // namespace

LiveStrip::LiveStrip(const EntryPoints& entry_points, const ChannelLayout& layout,
                     double sample_rate, const StripSettings& settings, Searches searches,
                     std::size_t meter_window)
    : channels_(layout.labels.size()),
      meters_(channels_, meter_window),
      live_(entry_points, *layout.format, design_strip(settings, sample_rate, layout)),
      old_(live_),
      gains_(design_mix(settings, sample_rate)),
      sample_rate_(sample_rate),
      searches_(searches),
      design_(settings, sample_rate, layout),
      wanted_(settings),
      unfinished_{} {}

void LiveStrip::set(const StripSettings& settings) {
  wanted_ = settings;
  is_wanted_ = true;
  is_idle_ = false;
}

void LiveStrip::apply(const StripSettings& settings) {
  const bool is_smooth = is_smooth_change(design_.settings(), settings);
  if (!is_smooth && !fade_.is_done()) return;
  is_wanted_ = false;
  meters_.read(live_);  // links may change
  if (!is_smooth) {
    old_ = live_;
    fade_.start(fade_length(settings, sample_rate_));
  }
  design_.change(settings);
  if (searches_ == Searches::kAtOnce) design_.finish_searches();
  if (is_smooth) {
    live_.set_coefficients(design_.coefficients());
  } else {
    live_.rearrange(design_.coefficients());
  }
  gains_.set(design_.coefficients().mix);
}

bool LiveStrip::is_idle() const {
  return !is_wanted_ && !design_.is_searching() && fade_.is_done() && gains_.are_neutral();
}

void LiveStrip::begin_block() {
  if (is_idle_) return;
  if (is_wanted_) apply(wanted_);
  if (design_.is_searching() && design_.step()) live_.set_coefficients(design_.coefficients());
  is_idle_ = is_idle();
}

// Up to here nothing changes but what the library does by itself.
std::size_t LiveStrip::until_step(std::size_t samples) const {
  samples = std::min(samples, meters_.left());
  if (is_idle_) return samples;
  if (design_.is_searching()) return kBlock;
  return fade_.is_done() ? samples : std::min(samples, fade_.left());
}

LiveStrip::Run LiveStrip::run_of(const Buffers& buffers, std::size_t begin,
                                 std::size_t samples) const {
  Run run{.inputs = {},
          .key = buffers.key ? buffers.key + begin : nullptr,
          .outputs = {},
          .samples = samples};
  for (std::size_t c = 0; c < channels_; ++c) {
    run.inputs[c] = buffers.inputs[c] + begin;
    run.outputs[c] = buffers.outputs[c] + begin;
  }
  return run;
}

void LiveStrip::process(const Buffers& buffers, std::size_t frames) {
  const FlushDenormals flush;
  for (std::size_t at = 0; at < frames;) {
    if (pending_ == 0) begin_block();
    const std::size_t left = frames - at;
    if (pending_ > 0 || left < kBlock) {
      at += process_part(buffers, at, left);
      continue;
    }
    const std::size_t samples = until_step(left / kBlock * kBlock);
    if (samples == frames) {
      run(buffers, samples);
    } else {
      run(buffers_of(run_of(buffers, at, samples)), samples);
    }
    at += samples;
  }
}

// Takes what the unfinished block lacks, or what there is, and returns how much that was.
std::size_t LiveStrip::process_part(const Buffers& call, std::size_t begin, std::size_t samples) {
  const Run part = run_of(call, begin, std::min(kBlock - pending_, samples));
  const std::size_t end = pending_ + part.samples;
  Block outputs;
  Run block{.inputs = {}, .key = nullptr, .outputs = {}, .samples = kBlock};
  const auto take = [&](const float* from, std::array<float, kBlock>& to) {
    for (std::size_t i = 0; i < part.samples; ++i) to[pending_ + i] = from ? from[i] : 0;
    for (std::size_t i = end; i < kBlock; ++i) to[i] = 0;
  };
  for (std::size_t c = 0; c < channels_; ++c) {
    take(part.inputs[c], unfinished_[c]);
    block.inputs[c] = unfinished_[c].data();
    block.outputs[c] = outputs[c].data();
  }
  if (pending_ == 0) pending_key_ = part.key != nullptr;
  take(part.key, unfinished_.back());
  if (pending_key_) block.key = unfinished_.back().data();

  if (end == kBlock) {
    run(buffers_of(block), kBlock);
  } else {
    const Ramp fade = fade_;
    const StripGains gains = gains_;
    Engine::State live, old;
    live_.save(live);
    if (!fade.is_done()) old_.save(old);
    is_metering_ = false;
    run(buffers_of(block), kBlock);
    is_metering_ = true;
    live_.restore(live);
    if (!fade.is_done()) old_.restore(old);
    fade_ = fade;
    gains_ = gains;
  }
  for (std::size_t c = 0; c < channels_; ++c) {
    std::copy_n(outputs[c].data() + pending_, part.samples, part.outputs[c]);
  }
  pending_ = end % kBlock;
  return part.samples;
}

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
  const float greatest = all.peak();  // NaN if there is one
  if (!(greatest <= kHarmless)) may_overflow_ = true;
  const bool is_direct = is_idle_ && greatest < kInfinite && !are_crossed(buffers, channels_);
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

void LiveStrip::finish_searches() {
  design_.finish_searches();
  live_.set_coefficients(design_.coefficients());
  live_.reset();
}

void LiveStrip::reset() {
  fade_.finish();
  if (is_wanted_) apply(wanted_);
  fade_.finish();
  gains_.finish();
  live_.reset();
  pending_ = 0;
  may_overflow_ = false;
  is_idle_ = false;
}

}  // namespace channelstrip::host
