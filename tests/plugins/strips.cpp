#include "strips.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace channelstrip::plugin_test {
namespace {

struct FreeStrip {
  void operator()(channelstrip_strip* strip) const { channelstrip_strip_free(strip); }
};

}  // namespace

Planar noise(std::size_t channels, std::size_t frames) {
  std::minstd_rand random(5);
  std::uniform_real_distribution<float> sample(-0.5f, 0.5f);
  Planar all(channels, std::vector<float>(frames));
  for (std::vector<float>& channel : all) {
    for (float& x : channel) x = sample(random);
  }
  return all;
}

bool are_finite(const Planar& audio) {
  return std::ranges::all_of(audio, [](const std::vector<float>& channel) {
    return std::ranges::all_of(channel, [](float x) { return std::isfinite(x); });
  });
}

std::uint32_t format_of(const char* name) {
  std::uint32_t format = 0;
  EXPECT_EQ(channelstrip_format_find(name, &format), CHANNELSTRIP_OK) << name;
  return format;
}

std::uint32_t channels_of(std::uint32_t format) {
  channelstrip_format info{};
  EXPECT_EQ(channelstrip_format_info(format, &info, sizeof info), CHANNELSTRIP_OK) << format;
  return info.channels;
}

std::uint32_t id_of(const std::string& symbol) {
  std::uint32_t id = 0;
  EXPECT_EQ(channelstrip_parameter_find(symbol.c_str(), &id), CHANNELSTRIP_OK) << symbol;
  return id;
}

Settings busy_settings() {
  Settings settings(channelstrip_settings_new());
  for (const auto& [symbol, value] : kBusy) {
    channelstrip_settings_set(settings.get(), id_of(symbol), value);
  }
  return settings;
}

Planar expected(std::uint32_t format, const channelstrip_settings* settings, const Planar& input,
                const std::vector<float>& key, const std::vector<channelstrip_event>& changes) {
  const channelstrip_strip_options options{format, CHANNELSTRIP_ORDER_WAV, kRate, settings};
  channelstrip_strip* made = nullptr;
  EXPECT_EQ(channelstrip_strip_new(&options, &made), CHANNELSTRIP_OK);
  const std::unique_ptr<channelstrip_strip, FreeStrip> strip(made);
  Planar output(input.size(), std::vector<float>(input[0].size()));
  std::vector<const float*> inputs;
  std::vector<float*> outputs;
  for (std::size_t c = 0; c < input.size(); ++c) {
    inputs.push_back(input[c].data());
    outputs.push_back(output[c].data());
  }
  const channelstrip_block block{.inputs = inputs.data(),
                                 .key = key.empty() ? nullptr : key.data(),
                                 .outputs = outputs.data(),
                                 .frames = static_cast<std::uint32_t>(input[0].size()),
                                 .event_count = static_cast<std::uint32_t>(changes.size()),
                                 .events = changes.data()};
  EXPECT_EQ(channelstrip_strip_process(strip.get(), &block), CHANNELSTRIP_OK);
  return output;
}

}  // namespace channelstrip::plugin_test
