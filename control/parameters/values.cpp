#include "values.h"

#include <algorithm>
#include <cmath>

#include "../design/prototype.h"
#include "../preset/draft.h"

namespace channelstrip::host {
namespace {

// Of the sample rate. With poles below about 2.8e-5 no stable section of floats is found.
constexpr double kLeastFrequency = 3e-5;
// The same holds for the other end: next to half the sample rate.
constexpr double kEndOfFrequencies = 0.4998;

// The poles of a shelf that raises the lows, or lowers the highs, lie below its frequency.
double least_frequency(const BandSettings& band, double sample_rate) {
  double gain = 0;
  if (band.type == BandType::kLowShelf) gain = band.gain;
  if (band.type == BandType::kHighShelf) gain = -band.gain;
  return kLeastFrequency * sample_rate * std::pow(10, std::max(gain, 0.0) / 80);
}

struct Fit {
  double sample_rate;
  AdjustedList* adjusted;
  int sections_left = static_cast<int>(kMostSections);

  void note(std::size_t group, std::string_view key, Adjustment adjustment, double used) const {
    if (adjusted) adjusted->push_back({*index_of(group, key), adjustment, used});
  }

  // Whether there is anything left of the band.
  bool adjust(EqBand& band, std::size_t group, int sections) const {
    if (band.frequency >= kEndOfFrequencies * sample_rate) {
      note(group, "frequency", Adjustment::kLeftOutAboveRate, 0);
      return false;
    }
    if (sections == 0) {
      note(group, "on", Adjustment::kLeftOutForSections, 0);
      return false;
    }
    if (const double least = least_frequency(band, sample_rate); band.frequency < least) {
      band.frequency = least;
      note(group, "frequency", Adjustment::kRaised, band.frequency);
    }
    if (section_count(band) > sections) {
      band.slope = 12 * sections;
      note(group, "slope", Adjustment::kShallower, band.slope);
    }
    return true;
  }
};

// What the values mean to their keys.
Value meant(const Parameter& p, double value) {
  if (p.least_above_zero > 0 && value == 0 && p.key == "shelf_slope") return std::nullopt;
  if (p.maximum == kInfiniteRatio && value >= kInfiniteRatio && p.key == "ratio") return kInfinity;
  return value;
}

}  // namespace

Values::Values() {
  std::ranges::transform(parameters(), of.begin(), &Parameter::initial);
}

EqBand band_of(const Values& values, std::size_t band) {
  EqBand result;
  const std::size_t first = std::size(kTopKeys) + band * std::size(kBandKeys);
  const std::size_t count = band == kBandCount ? kKeyFilterKeys.size() : std::size(kBandKeys);
  for (std::size_t i = first; i < first + count; ++i) {
    const Parameter& p = parameters()[i];
    p.band_key->access.set(result, meant(p, values.of[i]));
  }
  return result;
}

StripSettings settings_of(const Values& values, double sample_rate, AdjustedList* adjusted) {
  StripSettings settings;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    const Parameter& p = parameters()[i];
    if (p.strip_key) p.strip_key->access.set(settings, meant(p, values.of[i]));
  }
  leave_out_what_is_off(settings);
  settings.link = values.links;

  if (adjusted) adjusted->clear();
  Fit fit{.sample_rate = sample_rate, .adjusted = adjusted};
  for (std::size_t b = 0; b < kBandCount; ++b) {
    EqBand band = band_of(values, b);
    if (!band.on || !fit.adjust(band, kFirstBandGroup + b, fit.sections_left)) continue;
    fit.sections_left -= section_count(band);
    (band.position == Position::kPre ? settings.pre : settings.post).push_back(band);
  }
  EqBand key_filter = band_of(values, kBandCount);
  if (key_filter.on && fit.adjust(key_filter, kKeyFilterGroup, 1)) settings.key_filter = key_filter;
  return settings;
}

}  // namespace channelstrip::host
