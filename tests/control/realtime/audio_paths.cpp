#include "audio_paths.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace channelstrip::test {
namespace {

constexpr float kInfinite = std::numeric_limits<float>::infinity();

constexpr char kBusy[] = R"(
glide = 1
gain_in = 3
mix = 90
[[eq]]
type = "low_shelf"
frequency = 60
gain = 6
[[eq]]
frequency = 40
q = 4
gain = -9
[[eq]]
type = "high_pass"
frequency = 30
slope = 24
[[eq]]
type = "high_shelf"
frequency = 8000
gain = 3
position = "post"
design = "matched"
[key_filter]
type = "high_pass"
frequency = 80
[compressor]
threshold = -30
ratio = 4
makeup = 6
[expander]
hysteresis = 6
[detector]
mode = "smooth"
[link]
style = "none"
)";

// Eight low bands, each of which takes a search, after changes of all kinds.
constexpr char kLow[] = R"(
glide = 3
[[eq]]
type = "high_pass"
frequency = 20
slope = 96
[compressor]
ratio = inf
[link]
style = "all"
)";

constexpr char kOther[] = R"(
glide = 5
[[eq]]
on = false
[[eq]]
type = "tilt"
gain = 6
frequency = 100
[[eq]]
type = "notch"
frequency = 50
position = "post"
[expander]
[detector]
mode = "average"
[key]
listen = true
[link]
style = "film"
)";

}  // namespace

AudioPaths::AudioPaths(std::uint32_t format)
    : format_(format),
      busy_(settings_from(kBusy)),
      low_(settings_from(kLow)),
      other_(settings_from(kOther)),
      initial_(settings_from("")),
      too_many_(1025) {
  succeed(channelstrip_format_info(format, &info_, sizeof info_));
  for (std::size_t s = 0; s < kStrips; ++s) {
    strips_[s] = strip_of(format, busy_.get());
    for (std::size_t c = 0; c <= kMostChannels; ++c) {
      inputs_[s][c].resize(kFrames);
      outputs_[s][c].resize(kFrames);
    }
    for (std::size_t c = 0; c < info_.channels; ++c) {
      in_[s][c] = inputs_[s][c].data();
      out_[s][c] = outputs_[s][c].data();
    }
  }
  parameters_.resize(channelstrip_parameter_count());
  for (std::uint32_t i = 0; i < parameters_.size(); ++i) {
    succeed(channelstrip_parameter_info(i, &parameters_[i], sizeof parameters_[i]));
    double value = 0;
    succeed(channelstrip_settings_get(busy_.get(), parameters_[i].id, &value));
    busy_values_.push_back(value);
  }
  events_.reserve(1024);
}

void AudioPaths::run(PathReport& report) {
  report_ = &report;
  report.format = format_;
  change_by_events();
  change_between_calls();
  change_everything();
  bypass_and_key();
  reset_in_a_fade();
  share_buffers();
  harsh_input();
  invalid_arguments();
}

void AudioPaths::begin(const char* path) {
  report_->path = path;
  for (auto& strip : strips_) channelstrip_strip_set_settings(strip.get(), busy_.get());
  fill(0.5f);
}

// A path ends in plain audio, without waiting for a fade.
void AudioPaths::end() {
  for (auto& strip : strips_) {
    channelstrip_strip_set_settings(strip.get(), initial_.get());
    expect(CHANNELSTRIP_OK, [&] { return channelstrip_strip_reset(strip.get()); });
  }
  fill(0.5f);
  for (int i = 0; i < 8; ++i) process(kFrames);
  float peak = 0;
  for (const float x : outputs_[0][0]) peak = std::isfinite(x) ? std::max(peak, x) : kInfinite;
  if (!(peak > 0.1f && peak < 2)) ++report_->silent;
}

channelstrip_block AudioPaths::block_of(std::size_t strip, std::uint32_t frames) {
  return {.inputs = in_[strip].data(),
          .key = inputs_[strip][kMostChannels].data(),
          .outputs = out_[strip].data(),
          .frames = frames,
          .event_count = 0,
          .events = nullptr};
}

void AudioPaths::process(std::uint32_t frames, const std::vector<channelstrip_event>& events) {
  channelstrip_block block = block_of(0, frames);
  block.events = events.data();
  block.event_count = static_cast<std::uint32_t>(events.size());
  expect(CHANNELSTRIP_OK, [&] { return channelstrip_strip_process(strips_[0].get(), &block); });
}

void AudioPaths::process_many(std::uint32_t frames) {
  channelstrip_strip* strips[kStrips];
  channelstrip_block blocks[kStrips];
  for (std::size_t s = 0; s < kStrips; ++s) {
    strips[s] = strips_[s].get();
    blocks[s] = block_of(s, frames);
  }
  expect(CHANNELSTRIP_OK, [&] { return channelstrip_strip_process_many(strips, blocks, kStrips); });
}

void AudioPaths::refuse(channelstrip_block block) {
  expect(CHANNELSTRIP_INVALID,
         [&] { return channelstrip_strip_process(strips_[0].get(), &block); });
}

void AudioPaths::fill(float scale) {
  for (std::size_t s = 0; s < kStrips; ++s) {
    for (std::size_t c = 0; c <= kMostChannels; ++c) {
      for (std::size_t i = 0; i < kFrames; ++i) {
        inputs_[s][c][i] = scale * std::sin(static_cast<float>((i + c) * (c + s + 1)) * 0.1f);
      }
    }
  }
}

}  // namespace channelstrip::test
