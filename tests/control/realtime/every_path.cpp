// The paths themselves.

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "audio_paths.h"

namespace channelstrip::test {
namespace {

constexpr float kInfinite = std::numeric_limits<float>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

}  // namespace

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
