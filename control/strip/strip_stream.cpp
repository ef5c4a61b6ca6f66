#include "strip_stream.h"

#include <algorithm>

#include "../design/refusal_words.h"
#include "interleave.h"

namespace channelstrip::host {
namespace {

const StripSettings& start(const StripSettings& settings,
                           const std::vector<StripStream::Change>& changes) {
  const StripSettings* last = &settings;
  for (const StripStream::Change& change : changes) {
    if (change.frame < StripStream::kPeriod) last = &change.settings;
  }
  return *last;
}

std::unique_ptr<LiveStrip> make_strip(const Library& library, const ChannelLayout& layout,
                                      double sample_rate, const StripSettings& settings) {
  require_possible(settings, sample_rate, layout);
  return std::make_unique<LiveStrip>(library.entry_points(), layout, sample_rate, settings,
                                     LiveStrip::Searches::kAtOnce, StripStream::kWindow);
}

bool uses_key(const StripSettings& settings, const std::vector<StripStream::Change>& changes) {
  return settings.key_enable || std::ranges::any_of(changes, [](const auto& change) {
           return change.settings.key_enable;
         });
}

}  // namespace

StripStream::StripStream(const Library& library, const ChannelLayout& layout, double sample_rate,
                         const StripSettings& settings, std::vector<Change> changes)
    : layout_(std::make_unique<const ChannelLayout>(layout)),
      strip_(make_strip(library, *layout_, sample_rate, start(settings, changes))),
      channels_(layout.labels.size()),
      keyed_(uses_key(settings, changes)),
      inputs_((channels_ + keyed_) * kWindow),
      outputs_(channels_ * kWindow),
      input_pointers_(channels_ + keyed_),
      output_pointers_(channels_),
      changes_(std::move(changes)) {
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
  strip_->end_window();
  read_meters();
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
    strip_->set(change.settings);
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
  // Whole blocks: what the last one lacks is there, as silence.
  strip_->process(input_pointers_.data(), keyed_ ? input_pointers_.back() : nullptr,
                  output_pointers_.data(), (end - begin + kBlock - 1) / kBlock * kBlock);
}

void StripStream::read_meters() {
  const LiveMeters now = strip_->meters();
  strip_->clear_meters();
  const auto first = [this](const auto& values) { return std::span(values).first(channels_); };
  for (std::size_t c = 0; c < channels_; ++c) {
    meters_.input_peak[c] = std::max(meters_.input_peak[c], now.input_peak[c]);
    meters_.output_peak[c] = std::max(meters_.output_peak[c], now.output_peak[c]);
    meters_.least_gain[c] = std::min(meters_.least_gain[c], now.least_gain[c]);
  }
  meters_.compressor_reduction = std::max(meters_.compressor_reduction, now.compressor_reduction);
  meters_.expander_reduction = std::max(meters_.expander_reduction, now.expander_reduction);
  if (!observer_ || now.samples == 0) return;
  observer_({.input_peak = first(now.input_peak),
             .output_peak = first(now.output_peak),
             .level = now.level,
             .gain = now.gain,
             .compressor_reduction = now.compressor_reduction,
             .expander_reduction = now.expander_reduction,
             .channel_gain = first(now.greatest_gain)});
}

}  // namespace channelstrip::host
