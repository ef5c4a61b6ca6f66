#include "possible.h"

#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "averaging_section.h"
#include "band.h"
#include "dynamics.h"
#include "link_map.h"
#include "prototype.h"
#include "single_precision.h"

namespace channelstrip::host {
namespace {

using Where = Refusal::Where;
using MaybeRefusal = std::optional<Refusal>;

// Keeps the first of the refusals that checks find.
class Check {
 public:
  // Conditions say what must be true, so that NaN fails them.
  void require(bool holds, const BrokenRule& otherwise) {
    if (!holds) add(Refusal{.why = otherwise});
  }
  void within(double low, double high, std::string_view setting, double value,
              std::string_view unit) {
    require(low <= value && value <= high, {setting, value, unit, Rule::kWithin, low, high});
  }
  void range(double low, double value) {
    require(low < value && value <= 0, {"range", value, "dB", Rule::kAboveUpTo, low, 0});
  }
  void decibels(std::string_view setting, double value) { within(-200, 200, setting, value, "dB"); }
  void time(std::string_view setting, double milliseconds) {
    within(0, 10000, setting, milliseconds, "ms");
  }

  void add(const Refusal& refusal) {
    if (!first_) first_ = refusal;
  }
  void add(Where where, MaybeRefusal refusal, std::size_t band = 0) {
    if (!refusal) return;
    refusal->where = where;
    refusal->band = band;
    add(*refusal);
  }

  bool has_failed() const { return first_.has_value(); }
  const MaybeRefusal& first() const { return first_; }

 private:
  MaybeRefusal first_;
};

void check_curve(Check& check, double threshold, double knee) {
  check.decibels("threshold", threshold);
  check.require(knee == 0 || (knee >= kNarrowestKnee && knee <= 200),
                {"knee", knee, "dB", Rule::kZeroOrWithin, kNarrowestKnee, 200});
}

void check_q(Check& check, const BandSettings& band) {
  const double q = q_of(band);
  const bool holds = q > 0 && std::isfinite(q);
  if (!uses_shelf_slope(band)) {
    check.require(holds, {"q", q, "", Rule::kAboveZeroAndFinite});
  } else if (const double limit = shelf_slope_limit(band.gain); std::isinf(limit)) {
    check.require(holds, {"shelf_slope", *band.shelf_slope, "", Rule::kAboveZeroAndFinite});
  } else {
    check.require(holds, {.setting = "shelf_slope",
                          .value = *band.shelf_slope,
                          .rule = Rule::kShelfSlope,
                          .high = limit,
                          .given = band.gain});
  }
}

void check_bands(Check& check, const StripSettings& settings, double sample_rate) {
  std::size_t number = 0, sections = 0;
  for (const auto* bands : {&settings.pre, &settings.post}) {
    for (const BandSettings& band : *bands) {
      check.add(Where::kInBand, refusal_of(band, sample_rate), ++number);
      sections += static_cast<std::size_t>(section_count(band));
    }
  }
  if (sections <= kMostSections) return;
  check.add(Where::kInBands, Refusal{.why = TooManySections{number, sections}});
}

void check_key_filter(Check& check, const BandSettings& band, double sample_rate) {
  check.add(Where::kInKeyFilter, refusal_of(band, sample_rate));
  const int sections = section_count(band);
  if (sections == 1) return;
  check.add(Where::kInKeyFilter, Refusal{.why = SteepKeyFilter{band.slope, sections}});
}

}  // namespace

// The search for the best floats begins with rounded sections and tries stable ones only: whether
// these are stable decides.
MaybeRefusal refusal_of(const BandSettings& band, double sample_rate) {
  Check check;
  check.require(std::isfinite(sample_rate), {"sample rate", sample_rate, "Hz", Rule::kFinite});
  check.require(band.frequency > 0, {"frequency", band.frequency, "Hz", Rule::kAboveZero});
  check.require(band.frequency < sample_rate / 2, {.setting = "frequency",
                                                   .value = band.frequency,
                                                   .unit = "Hz",
                                                   .rule = Rule::kBelowHalfTheRate,
                                                   .given = sample_rate});
  if (uses_gain(band)) check.decibels("gain", band.gain);
  if (uses_slope(band)) {
    check.require(band.slope >= 6 && band.slope <= 96 && band.slope % 6 == 0,
                  {"slope", static_cast<double>(band.slope), "dB/oct", Rule::kPassSlope});
  }
  if (uses_q(band) || uses_shelf_slope(band)) check_q(check, band);
  if (check.has_failed()) return check.first();

  for (const Section& section : design_band(band, sample_rate)) {
    const Section rounded = rounded_section(section);
    if (!is_stable(rounded)) return Refusal{.why = UnstableBand{band, sample_rate, rounded}};
  }
  return {};
}

MaybeRefusal refusal_of(const CompressorSettings& settings) {
  Check check;
  check.require(settings.ratio >= 1, {"ratio", settings.ratio, "", Rule::kOneOrMore});
  check_curve(check, settings.threshold, settings.knee);
  check.time("attack", settings.attack);
  check.time("release", settings.release);
  check.range(-600, settings.range);
  check.decibels("makeup", settings.makeup);
  return check.first();
}

MaybeRefusal refusal_of(const ExpanderSettings& settings) {
  Check check;
  check.within(1, 100, "ratio", settings.ratio, "");
  check_curve(check, settings.threshold, settings.knee);
  check.time("attack", settings.attack);
  check.time("release", settings.release);
  check.time("hold", settings.hold);
  check.range(-150, settings.range);
  check.within(0, 200, "hysteresis", settings.hysteresis.value_or(0), "dB");
  return check.first();
}

// A section that is too slow for single precision never moves: its b0 is 0.
MaybeRefusal refusal_of(const DetectorSettings& settings, double sample_rate) {
  Check check;
  check.time("time", settings.time);
  if (check.has_failed()) return check.first();
  check.require(detector_section(settings, sample_rate).b0 > 0, {.setting = "time",
                                                                 .value = settings.time,
                                                                 .unit = "ms",
                                                                 .rule = Rule::kShortEnough,
                                                                 .given = sample_rate});
  return check.first();
}

MaybeRefusal refusal_of(const StripSettings& settings, double sample_rate,
                        const ChannelLayout& layout) {
  Check check;
  check.require(sample_rate > 0 && std::isfinite(sample_rate),
                {"sample rate", sample_rate, "Hz", Rule::kAboveZeroAndFinite});
  check.time("glide", settings.glide);
  if (check.has_failed()) return check.first();

  check_bands(check, settings, sample_rate);
  if (settings.compressor) check.add(Where::kInCompressor, refusal_of(*settings.compressor));
  if (settings.expander) check.add(Where::kInExpander, refusal_of(*settings.expander));
  check.add(Where::kInDetector, refusal_of(settings.detector, sample_rate));
  if (settings.key_filter) check_key_filter(check, *settings.key_filter, sample_rate);
  check.add(Where::kInLinks, read_links(settings, layout).refusal);
  check.decibels("input_meter_gain", settings.input_meter_gain);
  check.decibels("gain_in", settings.gain_in);
  check.decibels("gain_out", settings.gain_out);
  check.within(0, 100, "mix", settings.mix, "%");
  return check.first();
}

}  // namespace channelstrip::host
