#include "live_strip.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "denormals.h"

namespace channelstrip::host {
namespace {

// Inputs up to this can't overflow any filter: eight bands at +40 dB and a Q of 100 stay below
// 1e24 of their input's peak.
constexpr float kHarmless = 1e10f;

constexpr std::uint32_t kInfinityBits = 0x7f800000;

// The greatest magnitude, as bits, which order magnitudes as floats do; those of NaN lie above
// those of infinity.
std::uint32_t greatest_bits(const float* samples, std::size_t count) {
  std::uint32_t greatest = 0;
  for (std::size_t i = 0; i < count; ++i) {
    greatest = std::max(greatest, std::bit_cast<std::uint32_t>(samples[i]) & 0x7fffffff);
  }
  return greatest;
}

float peak(const float* samples, std::size_t count) {
  return std::bit_cast<float>(greatest_bits(samples, count));
}

// A cross-fade between two; with a share of 0 or 1 exactly one of them.
float mixed(float dry, float wet, float share) {
  const float both = (1 - share) * dry + share * wet;
  return share == 0 ? dry : share == 1 ? wet : both;
}

// Whole blocks that take about two time constants of a glide.
std::size_t fade_length(const StripSettings& settings, double sample_rate) {
  return static_cast<std::size_t>(2 * settings.glide / 1000 * sample_rate / kBlock) * kBlock;
}

}  // namespace

LiveStrip::LiveStrip(const EntryPoints& entry_points, const ChannelLayout& layout,
                     double sample_rate, const StripSettings& settings, Searches searches)
    : channels_(layout.labels.size()),
      sample_rate_(sample_rate),
      searches_(searches),
      design_(settings, sample_rate, layout),
      wanted_(settings),
      live_(entry_points, *layout.format, design_.coefficients()),
      old_(live_),
      gain_in_(design_.coefficients().mix.gain_in),
      gain_out_(design_.coefficients().mix.gain_out),
      mix_(design_.coefficients().mix.mix),
      processed_(settings.bypass ? 0 : 1),
      unfinished_{} {}

void LiveStrip::set(const StripSettings& settings) {
  wanted_ = settings;
  is_wanted_ = true;
}

void LiveStrip::apply(const StripSettings& settings) {
  const bool is_smooth = is_smooth_change(design_.settings(), settings);
  if (!is_smooth && !fade_.is_done()) return;
  is_wanted_ = false;
  if (!is_smooth) {
    old_ = live_;
    fade_.start(fade_length(settings, sample_rate_));
  }
  design_.change(settings);
  if (searches_ == Searches::kAtOnce) design_.finish_searches();
  const StripCoefficients& coefficients = design_.coefficients();
  if (is_smooth) {
    live_.set_coefficients(coefficients);
  } else {
    live_.rearrange(coefficients);
  }
  const MixCoefficients& mix = coefficients.mix;
  gain_in_.set(mix.gain_in, mix.weight);
  gain_out_.set(mix.gain_out, mix.weight);
  mix_.set(mix.mix, mix.weight);
  processed_.set(mix.bypass ? 0 : 1, mix.weight);
}

void LiveStrip::begin_block() {
  if (is_wanted_) apply(wanted_);
  if (design_.is_searching() && design_.step()) live_.set_coefficients(design_.coefficients());
}

// Up to here nothing changes but what the library does by itself.
std::size_t LiveStrip::until_step(std::size_t samples) const {
  if (design_.is_searching()) return kBlock;
  if (!fade_.is_done()) samples = std::min(samples, fade_.left());
  return std::min(samples, kWindow - window_);
}

LiveStrip::Run LiveStrip::Run::from(std::size_t sample, std::size_t count) const {
  Run part = *this;
  for (const float*& input : part.inputs) {
    if (input) input += sample;
  }
  for (float*& output : part.outputs) {
    if (output) output += sample;
  }
  if (key) part.key = key + sample;
  part.samples = count;
  return part;
}

void LiveStrip::process(const float* const* inputs, const float* key, float* const* outputs,
                        std::size_t frames) {
  const FlushDenormals flush;
  process(run_of({inputs, key, outputs}, frames));
}

LiveStrip::Run LiveStrip::run_of(const Buffers& buffers, std::size_t frames) const {
  Run run{.inputs = {}, .key = buffers.key, .outputs = {}, .samples = frames};
  std::copy_n(buffers.inputs, channels_, run.inputs.begin());
  std::copy_n(buffers.outputs, channels_, run.outputs.begin());
  return run;
}

void LiveStrip::process(const Run& call) {
  for (std::size_t at = 0; at < call.samples;) {
    if (pending_ == 0) begin_block();
    const std::size_t left = call.samples - at;
    if (pending_ > 0 || left < kBlock) {
      at += process_part(call.from(at, left));
    } else {
      const std::size_t count = until_step(left / kBlock * kBlock);
      run(call.from(at, count));
      at += count;
    }
  }
}

void LiveStrip::process_many(std::span<LiveStrip* const> strips, std::span<const Buffers> buffers,
                             std::size_t frames) {
  const FlushDenormals flush;
  std::array<Run, kMostAtOnce> calls;
  bool is_whole = frames % kBlock == 0;
  for (std::size_t i = 0; i < strips.size(); ++i) {
    calls[i] = strips[i]->run_of(buffers[i], frames);
    is_whole = is_whole && strips[i]->pending_ == 0;
  }
  if (!is_whole) {
    for (std::size_t i = 0; i < strips.size(); ++i) strips[i]->process(calls[i]);
    return;
  }
  std::array<const SChannelStrip_Alg_Context*, kMostAtOnce> contexts;
  std::array<Run, kMostAtOnce> runs;
  std::array<bool, kMostAtOnce> is_direct;
  for (std::size_t at = 0; at < frames;) {
    std::size_t samples = frames - at, direct = 0;
    for (LiveStrip* strip : strips) {
      strip->begin_block();
      samples = std::min(samples, strip->until_step(samples));
    }
    for (std::size_t i = 0; i < strips.size(); ++i) {
      LiveStrip& strip = *strips[i];
      runs[i] = calls[i].from(at, samples);
      strip.scan(runs[i]);
      is_direct[i] = strip.may_run_directly(runs[i]) && strip.live_.is_single();
      if (is_direct[i]) {
        contexts[direct++] =
            strip.live_.prepare(runs[i].inputs.data(), runs[i].key, runs[i].outputs.data(), samples)
                .data();
      } else {
        strip.run(runs[i]);
      }
    }
    strips.front()->live_.entry_point()(contexts.data(), contexts.data() + direct);
    for (std::size_t i = 0; i < strips.size(); ++i) {
      if (is_direct[i]) strips[i]->finish_run(runs[i], true);
    }
    at += samples;
  }
}

// Takes what the unfinished block lacks, or what there is, and returns how much that was.
std::size_t LiveStrip::process_part(const Run& call) {
  const std::size_t count = std::min(kBlock - pending_, call.samples);
  const std::size_t end = pending_ + count;
  Run block{.inputs = {}, .key = nullptr, .outputs = {}, .samples = kBlock};
  Block outputs;
  const auto take = [&](const float* from, std::array<float, kBlock>& to) {
    for (std::size_t i = 0; i < count; ++i) to[pending_ + i] = from ? from[i] : 0;
    std::fill(to.begin() + static_cast<std::ptrdiff_t>(end), to.end(), 0.0f);
  };
  if (pending_ == 0) pending_key_ = call.key != nullptr;
  for (std::size_t c = 0; c < channels_; ++c) {
    take(call.inputs[c], unfinished_[c]);
    block.inputs[c] = unfinished_[c].data();
    block.outputs[c] = outputs[c].data();
  }
  take(call.key, unfinished_.back());
  if (pending_key_) block.key = unfinished_.back().data();

  if (end == kBlock) {
    run(block);
  } else {
    struct Glides {
      Ramp fade;
      Glide gain_in, gain_out, mix, processed;
    };
    const Glides glides{fade_, gain_in_, gain_out_, mix_, processed_};
    Engine::State live, old;
    live_.save(live);
    if (!fade_.is_done()) old_.save(old);
    is_metering_ = false;
    run(block);
    is_metering_ = true;
    live_.restore(live);
    if (!glides.fade.is_done()) old_.restore(old);
    fade_ = glides.fade;
    gain_in_ = glides.gain_in;
    gain_out_ = glides.gain_out;
    mix_ = glides.mix;
    processed_ = glides.processed;
  }
  for (std::size_t c = 0; c < channels_; ++c) {
    std::copy_n(outputs[c].data() + pending_, count, call.outputs[c]);
  }
  pending_ = end % kBlock;
  return count;
}

void LiveStrip::run(const Run& run) {
  scan(run);
  const bool is_direct = may_run_directly(run);
  if (is_direct) {
    live_.process(run.inputs.data(), run.key, run.outputs.data(), run.samples);
  } else {
    input_peak_ = {};
    for (std::size_t at = 0; at < run.samples; at += kChunk) {
      run_chunk(run.from(at, std::min(kChunk, run.samples - at)));
    }
  }
  finish_run(run, is_direct);
}

void LiveStrip::finish_run(const Run& run, bool is_direct) {
  if (may_overflow_) repair(run);
  if (is_metering_) read_meters(run, is_direct);
}

// The inputs' peaks, and whether all samples are finite.
void LiveStrip::scan(const Run& run) {
  std::uint32_t greatest = run.key ? greatest_bits(run.key, run.samples) : 0;
  for (std::size_t c = 0; c < channels_; ++c) {
    const std::uint32_t bits = greatest_bits(run.inputs[c], run.samples);
    input_peak_[c] = std::bit_cast<float>(bits);
    greatest = std::max(greatest, bits);
  }
  is_clean_ = greatest < kInfinityBits;
  if (greatest > std::bit_cast<std::uint32_t>(kHarmless)) may_overflow_ = true;
}

// The library reads its inputs as it goes and writes outputs in between, so an output may only be
// the input of its own channel.
bool LiveStrip::may_run_directly(const Run& run) const {
  if (!is_clean_ || !fade_.is_done() || !gain_in_.rests_at(1) || !gain_out_.rests_at(1) ||
      !mix_.rests_at(1) || !processed_.rests_at(1)) {
    return false;
  }
  for (std::size_t c = 0; c < channels_; ++c) {
    if (run.key == run.outputs[c]) return false;
    for (std::size_t other = 0; other < channels_; ++other) {
      if (other != c && run.inputs[other] == run.outputs[c]) return false;
    }
  }
  return true;
}

// A copy of the inputs goes through the input gain and the strip, or both strips of a cross-fade.
void LiveStrip::run_chunk(const Run& run) {
  const auto cleaned = [&](float sample) {
    if (std::isfinite(sample)) return sample;
    if (is_metering_) ++meters_.not_finite;
    return 0.0f;
  };
  std::array<float, kChunk> gains;
  gain_in_.next(std::span(gains).first(run.samples));
  std::array<const float*, kMostChannels> in{};
  std::array<float*, kMostChannels> wet{}, before{};
  for (std::size_t c = 0; c < channels_; ++c) {
    for (std::size_t i = 0; i < run.samples; ++i) {
      dry_[c][i] = cleaned(run.inputs[c][i]);
      in_[c][i] = gains[i] * dry_[c][i];
    }
    input_peak_[c] = std::max(input_peak_[c], peak(in_[c].data(), run.samples));
    in[c] = in_[c].data();
    wet[c] = wet_[c].data();
    before[c] = before_[c].data();
  }
  const float* key = nullptr;
  if (run.key) {
    std::transform(run.key, run.key + run.samples, key_.begin(), cleaned);
    key = key_.data();
  }
  live_.process(in.data(), key, wet.data(), run.samples);
  if (!fade_.is_done()) {
    old_.process(in.data(), key, before.data(), run.samples);
    for (std::size_t i = 0; i < run.samples; ++i) {
      const float share = fade_.next();
      for (std::size_t c = 0; c < channels_; ++c) {
        wet_[c][i] = mixed(before_[c][i], wet_[c][i], share);
      }
    }
  }
  mix(run);
}

void LiveStrip::mix(const Run& run) {
  std::array<float, kChunk> gains, mixes, shares;
  gain_out_.next(std::span(gains).first(run.samples));
  mix_.next(std::span(mixes).first(run.samples));
  processed_.next(std::span(shares).first(run.samples));
  for (std::size_t c = 0; c < channels_; ++c) {
    for (std::size_t i = 0; i < run.samples; ++i) {
      const float wet = gains[i] * mixed(in_[c][i], wet_[c][i], mixes[i]);
      run.outputs[c][i] = mixed(dry_[c][i], wet, shares[i]);
    }
  }
}

void LiveStrip::repair(const Run& run) {
  const bool found = live_.repair();
  if (!fade_.is_done()) old_.repair();
  if (!found) return;
  for (std::size_t c = 0; c < channels_; ++c) {
    for (std::size_t i = 0; i < run.samples; ++i) {
      if (!std::isfinite(run.outputs[c][i])) run.outputs[c][i] = 0;
    }
  }
}

void LiveStrip::read_meters(const Run& run, bool is_direct) {
  const EngineMeters engine = live_.read_meters();
  const float gain = design_.coefficients().dynamics.inputMeterGain;
  LiveMeters now{.samples = run.samples,
                 .greatest_gain = engine.channel_gain,
                 .gain = engine.gain,
                 .level = engine.level,
                 .compressor_reduction = engine.compressor_reduction,
                 .expander_reduction = engine.expander_reduction};
  window_ += run.samples;
  for (std::size_t c = 0; c < channels_; ++c) {
    now.input_peak[c] = gain * input_peak_[c];
    now.output_peak[c] = is_direct ? engine.output_peak[c] : peak(run.outputs[c], run.samples);
    if (now.output_peak[c] > 1) {
      now.overs[c] = static_cast<std::uint64_t>(
          std::count_if(run.outputs[c], run.outputs[c] + run.samples,
                        [](float sample) { return std::abs(sample) > 1; }));
    }
    window_gain_[c] = std::max(window_gain_[c], engine.channel_gain[c]);
    const Dyn_SState& state = live_.group_state(c);
    now.compressor_gain[c] = state.compGain;
    now.expander_gain[c] = state.expGain;
    now.detector_level[c] =
        design_.coefficients().dynamics.detectorMode > 0 ? state.smoothLevel : state.peakLevel;
  }
  meters_.append(now);
  if (window_ == kWindow) end_window();
}

void LiveStrip::end_window() {
  if (window_ == 0) return;
  for (std::size_t c = 0; c < channels_; ++c) {
    meters_.least_gain[c] = std::min(meters_.least_gain[c], window_gain_[c]);
  }
  window_gain_ = {};
  window_ = 0;
}

LiveMeters LiveStrip::take_meters() {
  LiveMeters next{.compressor_gain = meters_.compressor_gain,
                  .expander_gain = meters_.expander_gain,
                  .detector_level = meters_.detector_level};
  return std::exchange(meters_, next);
}

void LiveStrip::finish_searches() {
  design_.finish_searches();
  live_.set_coefficients(design_.coefficients());
  live_.reset();
}

void LiveStrip::reset() {
  if (is_wanted_) {
    fade_.finish();
    apply(wanted_);
  }
  fade_.finish();
  for (Glide* glide : {&gain_in_, &gain_out_, &mix_, &processed_}) glide->finish();
  live_.reset();
  pending_ = 0;
  may_overflow_ = false;
}

}  // namespace channelstrip::host
