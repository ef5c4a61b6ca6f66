#include "live_strip.h"

#include <algorithm>

#include "denormals.h"

namespace channelstrip::host {
namespace {

// Whole blocks that take about two time constants of a glide.
std::size_t fade_length(const StripSettings& settings, double sample_rate) {
  return static_cast<std::size_t>(2 * settings.glide / 1000 * sample_rate / kBlock) * kBlock;
}

}  // namespace

LiveStrip::LiveStrip(const EntryPoints& entry_points, const ChannelLayout& layout,
                     double sample_rate, const StripSettings& settings, Searches searches,
                     std::size_t meter_window)
    : channels_(layout.labels.size()),
      meters_(channels_, meter_window),
      sharing_(channels_),
      design_(settings, sample_rate, layout),
      live_(entry_points, *layout.format, design_.coefficients()),
      old_(live_),
      gains_(design_.coefficients().mix),
      sample_rate_(sample_rate),
      searches_(searches),
      wanted_(settings),
      unfinished_{} {}

void LiveStrip::set(const StripSettings& settings) {
  wanted_ = settings;
  is_wanted_ = true;
  is_idle_ = false;
}

void LiveStrip::apply(const StripSettings& settings) {
  const bool is_near = design_.is_near(settings);
  if (!is_near && !fade_.is_done()) return;
  is_wanted_ = false;
  meters_.read(live_);  // links may change
  if (!is_near) {
    old_ = live_;
    fade_.start(fade_length(settings, sample_rate_));
  }
  design_.change(settings);
  if (searches_ == Searches::kAtOnce) design_.finish_searches();
  if (is_near) {
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
  if (design_.is_searching() || is_wanted_) return kBlock;
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

// Takes what the unfinished block lacks and some whole blocks that follow, or else what there is,
// and returns how much that was.
std::size_t LiveStrip::process_part(const Buffers& call, std::size_t begin, std::size_t samples) {
  const std::size_t whole = (pending_ + samples) / kBlock * kBlock;
  std::size_t length = whole > 0 ? std::min(until_step(whole), kChunk) : kBlock;
  if (pending_ > 0 && pending_key_ != (call.key != nullptr)) length = kBlock;
  const Run part = run_of(call, begin, whole > 0 ? length - pending_ : samples);
  const std::size_t end = pending_ + part.samples;
  decltype(unfinished_) outputs;
  Run block{.inputs = {}, .key = nullptr, .outputs = {}, .samples = length};
  const auto take = [&](const float* from, std::array<float, kChunk>& to) {
    for (std::size_t i = 0; i < part.samples; ++i) to[pending_ + i] = from ? from[i] : 0;
    for (std::size_t i = end; i < length; ++i) to[i] = 0;
  };
  for (std::size_t c = 0; c < channels_; ++c) {
    take(part.inputs[c], unfinished_[c]);
    block.inputs[c] = unfinished_[c].data();
    block.outputs[c] = outputs[c].data();
  }
  if (pending_ == 0) pending_key_ = part.key != nullptr;
  take(part.key, unfinished_.back());
  if (pending_key_) block.key = unfinished_.back().data();

  if (end == length) {
    run(buffers_of(block), length);
  } else {
    const Ramp fade = fade_;
    const StripGains gains = gains_;
    Engine::State live, old;
    live_.save(live);
    if (!fade.is_done()) old_.save(old);
    is_metering_ = false;
    run(buffers_of(block), length);
    is_metering_ = true;
    live_.restore(live);
    if (!fade.is_done()) old_.restore(old);
    fade_ = fade;
    gains_ = gains;
  }
  for (std::size_t c = 0; c < channels_; ++c) {
    std::copy_n(outputs[c].data() + pending_, part.samples, part.outputs[c]);
  }
  pending_ = end == length ? 0 : end;
  return part.samples;
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
