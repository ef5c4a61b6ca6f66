#include "audio_paths.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace channelstrip::test {
namespace {

constexpr float kInfinite = std::numeric_limits<float>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

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

template <typename Call>
void AudioPaths::expect(channelstrip_status wanted, Call call) {
  const Trapped before = report_->trapped;
  channelstrip_status status = CHANNELSTRIP_OK;
  {
    const Trap trap(report_->trapped);
    status = call();
  }
  if (!(report_->trapped == before) && *report_->culprit == '\0') report_->culprit = report_->path;
  ++report_->calls;
  if (status != wanted) ++report_->unexpected;
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

// Each to both ends and back, at frames within and between blocks, 0 and the last.
void AudioPaths::change_by_events() {
  begin("changed by events");
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    const channelstrip_parameter& p = parameters_[i];
    for (const std::uint32_t frames : {16u, 61u, 300u}) {
      events_.clear();
      events_.push_back({0, p.id, p.minimum});
      events_.push_back({3, p.id, p.maximum});
      events_.push_back({5, p.id, (p.minimum + p.maximum) / 3});
      events_.push_back({frames / 2, p.id, p.maximum * 2});
      events_.push_back({frames, p.id, busy_values_[i]});
      process(frames, events_);
    }
    process(kFrames);
  }
  events_.clear();
  for (std::uint32_t i = 0; i < 1024; ++i) {
    const channelstrip_parameter& p = parameters_[i % parameters_.size()];
    events_.push_back({i / 2, p.id, i % 3 == 0 ? p.maximum : p.initial});
  }
  process(kFrames, events_);
  end();
}

void AudioPaths::change_between_calls() {
  begin("set between calls");
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    const channelstrip_parameter& p = parameters_[i];
    for (const double value : {p.minimum, p.maximum, busy_values_[i]}) {
      for (auto& strip : strips_) channelstrip_strip_set(strip.get(), p.id, value);
      process(33);
      process_many(48);
      process_many(i % 2 ? 64 : 61);
    }
  }
  end();
}

void AudioPaths::change_everything() {
  begin("all settings at once");
  for (int round = 0; round < 6; ++round) {
    for (const auto& settings : {&busy_, &low_, &other_, &initial_}) {
      for (std::size_t s = 0; s <= static_cast<std::size_t>(round) % kStrips; ++s) {
        channelstrip_strip_set_settings(strips_[s].get(), settings->get());
      }
      process_many(kFrames / 16 * 16);
      process(1);
      process_many(kFrames - 7);
      process(0);
    }
  }
  end();
}

void AudioPaths::bypass_and_key() {
  begin("bypass and key");
  channelstrip_strip* const strip = strips_[0].get();
  for (const char* symbol : {"bypass", "key_enable", "key_listen"}) {
    const auto found = std::find_if(parameters_.begin(), parameters_.end(), [&](const auto& p) {
      return std::string_view(p.symbol) == std::string_view(symbol);
    });
    for (const double value : {1.0, 0.0, 1.0}) {
      channelstrip_strip_set(strip, found->id, value);
      for (int i = 0; i < 4; ++i) process(kFrames);
      channelstrip_block without_key = block_of(0, 100);
      without_key.key = nullptr;
      expect(CHANNELSTRIP_OK, [&] { return channelstrip_strip_process(strip, &without_key); });
    }
  }
  end();
}

void AudioPaths::reset_in_a_fade() {
  begin("reset");
  for (const auto& settings : {&low_, &busy_, &other_, &busy_}) {
    for (auto& strip : strips_) channelstrip_strip_set_settings(strip.get(), settings->get());
    process(21);
    for (auto& strip : strips_) {
      expect(CHANNELSTRIP_OK, [&] { return channelstrip_strip_reset(strip.get()); });
    }
    channelstrip_strip_set_settings(strips_[0].get(), initial_.get());
    expect(CHANNELSTRIP_OK, [&] { return channelstrip_strip_reset(strips_[0].get()); });
    process(kFrames);
  }
  end();
}

void AudioPaths::share_buffers() {
  begin("shared buffers");
  const auto own = out_;
  for (const std::uint32_t frames : {600u, 45u, 7u}) {
    for (std::size_t c = 0; c < info_.channels; ++c) out_[0][c] = inputs_[0][c].data();
    process(frames);
    std::reverse(out_[0].begin(), out_[0].begin() + info_.channels);
    process(frames);
    out_[0][0] = inputs_[0][kMostChannels].data();
    process(frames);
  }
  out_ = own;
  end();
}

void AudioPaths::harsh_input() {
  begin("harsh input");
  const float kHarsh[] = {kInfinite, -kInfinite, std::nanf(""), 3.4e38f, -3.4e38f, 1e-42f};
  for (const float harsh : kHarsh) {
    for (const std::uint32_t frames : {64u, 45u}) {
      fill(0.5f);
      for (std::size_t c = 0; c <= kMostChannels; ++c) {
        for (std::size_t i = c; i < kFrames; i += 11) inputs_[0][c][i] = harsh;
      }
      process(frames);
      process_many(frames);
    }
  }
  end();
}

void AudioPaths::invalid_arguments() {
  begin("invalid arguments");
  channelstrip_strip* const strip = strips_[0].get();
  channelstrip_block block = block_of(0, 32);
  expect(CHANNELSTRIP_INVALID, [&] { return channelstrip_strip_process(nullptr, &block); });
  expect(CHANNELSTRIP_INVALID, [&] { return channelstrip_strip_process(strip, nullptr); });
  expect(CHANNELSTRIP_INVALID, [&] { return channelstrip_strip_reset(nullptr); });
  channelstrip_block wrong = block;
  wrong.inputs = nullptr;
  refuse(wrong);
  wrong = block;
  wrong.outputs = nullptr;
  refuse(wrong);
  wrong = block;
  wrong.event_count = 1;
  refuse(wrong);
  const std::uint32_t id = parameters_[0].id;
  const channelstrip_event kRefused[][2] = {{{0, 4000000000u, 0}, {0, id, 0}},
                                            {{0, id, kNotANumber}, {0, id, 0}},
                                            {{8, id, 0}, {4, id, 0}},
                                            {{0, id, 0}, {33, id, 0}}};
  for (const auto& events : kRefused) {
    wrong = block;
    wrong.event_count = 2;
    wrong.events = events;
    refuse(wrong);
  }
  wrong.event_count = static_cast<std::uint32_t>(too_many_.size());
  wrong.events = too_many_.data();
  refuse(wrong);

  channelstrip_strip* const pair[] = {strip, strips_[1].get()};
  channelstrip_strip* const missing[] = {strip, nullptr};
  channelstrip_block blocks[] = {block, block_of(1, 32)};
  const auto refuse_many = [&](channelstrip_strip* const* strips, channelstrip_block* of) {
    expect(CHANNELSTRIP_INVALID, [&] { return channelstrip_strip_process_many(strips, of, 2); });
  };
  refuse_many(nullptr, blocks);
  refuse_many(pair, nullptr);
  refuse_many(missing, blocks);
  blocks[1].frames = 33;
  refuse_many(pair, blocks);
  blocks[1] = blocks[0];
  blocks[1].event_count = 1;
  refuse_many(pair, blocks);
  end();
}

}  // namespace channelstrip::test
