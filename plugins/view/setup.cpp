#include <algorithm>
#include <cmath>
#include <new>

#include "model.h"

namespace channelstrip::view {
namespace {

// Evenly along a log axis, and around each band as closely as its bandwidth f / Q asks for.
std::vector<double> curve_frequencies(const std::vector<double>& values, double sample_rate) {
  constexpr std::size_t kEven = 320;
  std::vector<double> frequencies;
  for (std::size_t i = 0; i < kEven; ++i) {
    const double position = static_cast<double>(i) / (kEven - 1);
    frequencies.push_back(kLowestFrequency *
                          std::pow(kHighestFrequency / kLowestFrequency, position));
  }
  for (const BandParameters& band : parameters().bands) {
    const double frequency = values[band.frequency];
    for (const double offset : {-1.0, -0.5, -0.25, -0.1, 0.0, 0.1, 0.25, 0.5, 1.0}) {
      frequencies.push_back(frequency * (1 + offset / std::max(2.0, values[band.q])));
    }
  }
  std::erase_if(frequencies, [&](double f) {
    return f < kLowestFrequency || f > std::min(kHighestFrequency, sample_rate / 2);
  });
  std::ranges::sort(frequencies);
  return frequencies;
}

}  // namespace

Setup setup_of(const channelstrip_settings* settings, std::uint32_t format, double sample_rate) {
  const Parameters& all = parameters();
  Setup setup;
  setup.format = format;
  setup.sample_rate = sample_rate;
  setup.values.resize(all.all.size());
  setup.adjusted.resize(all.all.size());
  for (std::size_t i = 0; i < all.all.size(); ++i) {
    channelstrip_settings_get(settings, all.all[i].id, &setup.values[i]);
  }
  std::array<channelstrip_adjustment, 32> adjustments;
  std::uint32_t total = 0;
  channelstrip_settings_adjustments(settings, sample_rate, adjustments.data(),
                                    static_cast<std::uint32_t>(adjustments.size()), &total);
  for (std::size_t a = 0; a < std::min<std::size_t>(total, adjustments.size()); ++a) {
    const channelstrip_adjustment& adjustment = adjustments[a];
    const auto found = std::ranges::find(all.all, adjustment.id, &channelstrip_parameter::id);
    const auto index = static_cast<std::size_t>(found - all.all.begin());
    setup.adjusted[index] = true;
    if (adjustment.adjustment != CHANNELSTRIP_LEFT_OUT_ABOVE_RATE &&
        adjustment.adjustment != CHANNELSTRIP_LEFT_OUT_FOR_SECTIONS) {
      continue;
    }
    for (std::size_t b = 0; b < kBands; ++b) {
      if (index == all.bands[b].on || index == all.bands[b].frequency) setup.left_out[b] = true;
    }
  }

  setup.frequencies = curve_frequencies(setup.values, sample_rate);
  const auto response = [&](std::uint32_t part) {
    std::vector<double> decibels(setup.frequencies.size());
    channelstrip_settings_response(settings, sample_rate, part, setup.frequencies.data(),
                                   decibels.data(), static_cast<std::uint32_t>(decibels.size()));
    return decibels;
  };
  setup.sum = response(CHANNELSTRIP_EQ_ALL);
  for (std::size_t b = 0; b < kBands; ++b) {
    if (setup.is_on(all.bands[b].on) && !setup.left_out[b]) {
      setup.bands[b] = response(static_cast<std::uint32_t>(b + 1));
    }
  }
  if (setup.is_on(all.key_filter.on)) setup.key_filter = response(CHANNELSTRIP_EQ_KEY_FILTER);

  constexpr double kLowest = -144, kHighest = 24, kStep = 0.5;
  for (int i = 0; kLowest + i * kStep <= kHighest; ++i) setup.levels.push_back(kLowest + i * kStep);
  const auto count = static_cast<std::uint32_t>(setup.levels.size());
  setup.compressor.resize(count);
  setup.expander_open.resize(count);
  setup.expander_shut.resize(count);
  channelstrip_settings_static_gains(settings, 1, setup.levels.data(), setup.compressor.data(),
                                     setup.expander_open.data(), count);
  channelstrip_settings_static_gains(settings, 0, setup.levels.data(), nullptr,
                                     setup.expander_shut.data(), count);
  return setup;
}

}  // namespace channelstrip::view
