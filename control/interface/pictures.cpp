#include <algorithm>
#include <cmath>
#include <complex>
#include <span>

#include "../design/band.h"
#include "../design/dynamics.h"
#include "../design/section.h"
#include "../strip/strip_design.h"
#include "layouts.h"
#include "objects.h"

namespace channelstrip::host {
namespace {

constexpr double kSilence = -1000;  // dB, in place of minus infinity

// The bands that a part of a strip has; one alone is there even if it is off.
StripSettings::Bands bands_of(const Values& values, double sample_rate, std::uint32_t part) {
  StripSettings::Bands bands;
  const auto add_alone = [&](std::size_t band) {
    Values alone = values;
    for (std::size_t b = 0; b <= kBandCount; ++b) {
      alone.of[*index_of(kFirstBandGroup + b, "on")] = b == band ? 1 : 0;
    }
    const StripSettings settings = settings_of(alone, sample_rate);
    for (const auto& list : {settings.pre, settings.post}) {
      for (const BandSettings& each : list) bands.push_back(each);
    }
    if (settings.key_filter) bands.push_back(*settings.key_filter);
  };
  const StripSettings settings = settings_of(values, sample_rate);
  switch (part) {
    case CHANNELSTRIP_EQ_ALL:
      for (const BandSettings& band : settings.pre) bands.push_back(band);
      for (const BandSettings& band : settings.post) bands.push_back(band);
      break;
    case CHANNELSTRIP_EQ_PRE:
      return settings.pre;
    case CHANNELSTRIP_EQ_POST:
      return settings.post;
    case CHANNELSTRIP_EQ_KEY_FILTER:
      add_alone(kBandCount);
      break;
    default:
      add_alone(part - 1);
  }
  return bands;
}

Sections stored(const BandSettings& band, double sample_rate) {
  Sections sections = fitted_to_single_precision(design_band(band, sample_rate));
  for (Section& section : sections) {
    if (!is_stable(section)) section = {};
  }
  return sections;
}

}  // namespace
}  // namespace channelstrip::host

using namespace channelstrip::host;

channelstrip_status channelstrip_settings_response(const channelstrip_settings* settings,
                                                   double sample_rate, uint32_t part,
                                                   const double* frequencies, double* decibels,
                                                   uint32_t count) {
  if (!settings || !is_rate(sample_rate) || part > CHANNELSTRIP_EQ_KEY_FILTER ||
      (count > 0 && (!frequencies || !decibels))) {
    return CHANNELSTRIP_INVALID;
  }
  const auto in_range = [&](double f) { return f >= 0 && f <= sample_rate / 2; };
  if (!std::all_of(frequencies, frequencies + count, in_range)) return CHANNELSTRIP_INVALID;
  return guarded([&] {
    std::fill_n(decibels, count, 0.0);
    for (const BandSettings& band : bands_of(settings->values, sample_rate, part)) {
      const Sections sections = stored(band, sample_rate);
      for (std::size_t i = 0; i < count; ++i) {
        const double magnitude = std::abs(response(sections, frequencies[i], sample_rate));
        decibels[i] += std::max(kSilence, linear_to_db(magnitude));
      }
    }
    return CHANNELSTRIP_OK;
  });
}

channelstrip_status channelstrip_settings_static_gains(const channelstrip_settings* settings,
                                                       uint32_t gate_open, const double* levels,
                                                       double* compressor, double* expander,
                                                       uint32_t count) {
  if (!settings || (count > 0 && !levels)) return CHANNELSTRIP_INVALID;
  if (!std::all_of(levels, levels + count, [](double level) { return std::isfinite(level); })) {
    return CHANNELSTRIP_INVALID;
  }
  return guarded([&] {
    constexpr double kAnyRate = 48000;
    const StripSettings strip = settings_of(settings->values, kAnyRate);
    const bool has_gate = strip.expander && strip.expander->hysteresis;
    for (std::size_t i = 0; i < count; ++i) {
      const StaticGain gain = static_gain(strip, levels[i], !has_gate || gate_open != 0);
      if (compressor) compressor[i] = gain.compressor;
      if (expander) expander[i] = gain.expander;
    }
    return CHANNELSTRIP_OK;
  });
}
