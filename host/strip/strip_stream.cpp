#include "strip_stream.h"

#include <algorithm>

#include "../design/dynamics_coefficients.h"
#include "interleave.h"

namespace channelstrip::host {
namespace {

const StripCoefficients& start(const StripCoefficients& coefficients,
                               const std::vector<StripStream::Change>& changes) {
  const StripCoefficients* last = &coefficients;
  for (const StripStream::Change& change : changes) {
    if (change.frame < StripStream::kPeriod) last = &change.coefficients;
  }
  return *last;
}

bool uses_key(const StripCoefficients& coefficients,
              const std::vector<StripStream::Change>& changes) {
  const auto enabled = [](const StripCoefficients& some) { return some.dynamics.keyEnable == 1; };
  return enabled(coefficients) ||
         std::ranges::any_of(changes, enabled, &StripStream::Change::coefficients);
}

bool mixes(const StripCoefficients& coefficients, const std::vector<StripStream::Change>& changes) {
  const auto mixed = [](const StripCoefficients& some) { return !some.mix.is_neutral(); };
  return mixed(coefficients) ||
         std::ranges::any_of(changes, mixed, &StripStream::Change::coefficients);
}

std::vector<LinkMap> maps_of(const StripCoefficients& coefficients,
                             const std::vector<StripStream::Change>& changes) {
  std::vector<LinkMap> maps{links_of(coefficients.dynamics)};
  for (const auto& change : changes) maps.push_back(links_of(change.coefficients.dynamics));
  return maps;
}

}  // namespace

StripStream::StripStream(const Library& library, const StemFormat& format,
                         const StripCoefficients& coefficients, std::vector<Change> changes)
    : strips_(library, format, start(coefficients, changes), maps_of(coefficients, changes)),
      channels_(static_cast<std::size_t>(format.channels)),
      keyed_(uses_key(coefficients, changes)),
      inputs_((channels_ + keyed_) * kWindow),
      outputs_(channels_ * kWindow),
      input_pointers_(channels_ + keyed_),
      output_pointers_(channels_),
      changes_(std::move(changes)),
      window_gain_(channels_) {
  if (mixes(coefficients, changes_)) {
    mix_.emplace(start(coefficients, changes_).mix, input_pointers_.size(), channels_, kWindow);
  }
  meters_.input_peak.resize(channels_);
  meters_.output_peak.resize(channels_);
  meters_.least_gain.assign(channels_, 1.0f);
}

void StripStream::process(std::span<const float> frames, std::span<const float> key,
                          std::vector<float>& output) {
  while (!frames.empty()) {
    const std::size_t count = std::min(frames.size() / channels_, kWindow - pending_);
    deinterleave(frames.data(), channels_, count, inputs_.data() + pending_, kWindow);
    frames = frames.subspan(count * channels_);
    if (keyed_) {
      const std::span<const float> there = key.first(std::min(key.size(), count));
      float* const place = inputs_.data() + channels_ * kWindow + pending_;
      std::fill(std::ranges::copy(there, place).out, place + count, 0.0f);
      key = key.subspan(there.size());
    }
    pending_ += count;
    if (pending_ == kWindow) run(output);
  }
}

void StripStream::finish(std::vector<float>& output) {
  if (pending_ == 0) return;
  for (std::size_t at = 0; at < inputs_.size(); at += kWindow) {
    std::fill_n(inputs_.begin() + static_cast<std::ptrdiff_t>(at + pending_), kWindow - pending_,
                0.0f);
  }
  run(output);
}

void StripStream::run(std::vector<float>& output) {
  for (std::size_t begin = 0; begin < pending_;) begin = call_from(begin);
  if (!observer_) read_meters();
  end_window();
  output.resize(output.size() + pending_ * channels_);
  interleave(outputs_.data(), kWindow, channels_, pending_,
             output.data() + output.size() - pending_ * channels_);
  position_ += pending_;
  pending_ = 0;
}

// Processes up to the next change of settings, or a single period if there is an observer. Returns
// where it stopped.
std::size_t StripStream::call_from(std::size_t begin) {
  std::size_t end = pending_;
  if (observer_) end = std::min(end, begin + kPeriod);
  for (; next_change_ < changes_.size(); ++next_change_) {
    const Change& change = changes_[next_change_];
    const std::uint64_t period = change.frame / kPeriod * kPeriod;
    if (period > position_ + begin) {
      end = std::min<std::uint64_t>(end, period - position_);
      break;
    }
    strips_.set_coefficients(change.coefficients);
    if (mix_) mix_->set(change.coefficients.mix);
  }
  call(begin, end);
  if (observer_) read_meters();
  return end;
}

void StripStream::call(std::size_t begin, std::size_t end) {
  for (std::size_t i = 0; i < input_pointers_.size(); ++i) {
    input_pointers_[i] = inputs_.data() + i * kWindow + begin;
  }
  for (std::size_t c = 0; c < channels_; ++c) {
    output_pointers_[c] = outputs_.data() + c * kWindow + begin;
  }
  const std::span<const float* const> inputs = mix_
                                                   ? mix_->enter(input_pointers_, end - begin)
                                                   : std::span<const float* const>(input_pointers_);
  strips_.process(inputs.data(), output_pointers_.data(), static_cast<int>(end - begin), keyed_);
  if (mix_) mix_->leave(input_pointers_, output_pointers_, end - begin);
}

void StripStream::read_meters() {
  MeterReading reading = strips_.read_meters();
  if (mix_) reading.output_peak = mix_->output_peak();
  const auto hold_maximum = [](float& held, float value) { held = std::max(held, value); };
  for (std::size_t c = 0; c < channels_; ++c) {
    hold_maximum(meters_.input_peak[c], reading.input_peak[c]);
    hold_maximum(meters_.output_peak[c], reading.output_peak[c]);
    hold_maximum(window_gain_[c], reading.channel_gain[c]);
  }
  hold_maximum(meters_.compressor_reduction, reading.compressor_reduction);
  hold_maximum(meters_.expander_reduction, reading.expander_reduction);
  if (observer_) observer_(reading);
  strips_.reset_meters();
  if (mix_) mix_->reset_meters();
}

// The meters hold the greatest gain since their last reset, so the strip stayed at or below the
// least of the windows' gains for a whole window.
void StripStream::end_window() {
  for (std::size_t c = 0; c < channels_; ++c) {
    meters_.least_gain[c] = std::min(meters_.least_gain[c], window_gain_[c]);
    window_gain_[c] = 0;
  }
}

}  // namespace channelstrip::host
