#include "strip_coefficients.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "dynamics.h"
#include "require.h"
#include "section.h"

namespace channelstrip::host {
namespace {

// Detector levels lie between -765 dB, the least float, and 771 dB, infinity.
constexpr double kBelowAnyLevel = -1000;
constexpr double kAboveAnyLevel = 1000;

constexpr double kLongestHold = std::numeric_limits<int32_t>::max();  // samples

float to_float(double value) {
  return static_cast<float>(value);
}

// Calls `design` and puts `setting` before the message of what it refuses.
template <typename Design>
auto naming(const std::string& setting, Design design) {
  try {
    return design();
  } catch (const std::invalid_argument& refusal) {
    throw std::invalid_argument(setting + refusal.what());
  }
}

void store(const Section& section, float* coefficients) {
  const std::array ordered{section.b0, section.b1, section.b2, section.a1, section.a2};
  std::ranges::transform(ordered, coefficients, to_float);
}

EQ_SCoefs design_eq(const StripSettings& settings, double sample_rate) {
  std::vector<BandSettings> bands = settings.pre;
  bands.insert(bands.end(), settings.post.begin(), settings.post.end());
  if (bands.size() > CHANNELSTRIP_EQ_BANDS) {
    throw std::invalid_argument(fmt::format("eq: {} bands, a strip has at most {}", bands.size(),
                                            static_cast<int>(CHANNELSTRIP_EQ_BANDS)));
  }
  EQ_SCoefs eq{};
  for (std::size_t k = 0; k < CHANNELSTRIP_EQ_BANDS; ++k) {
    const Section section =
        k >= bands.size() ? Section{} : naming(fmt::format("eq band {}: ", k + 1), [&] {
          return design_stored_band(bands[k], sample_rate);
        });
    store(section, eq.targetCoefs + 5 * k);
  }
  const auto pre = static_cast<int32_t>(settings.pre.size());
  eq.firstBand[0] = 0;
  eq.endBand[0] = eq.firstBand[1] = pre;
  eq.endBand[1] = static_cast<int32_t>(bands.size());
  return eq;
}

// Without a compressor the term stays at 0 dB whatever the range; the default one keeps a
// compressor that is switched in from starting at a limit of 0 dB.
void design_compressor(const std::optional<CompressorSettings>& wanted, double sample_rate,
                       Dyn_SCoefsBlock& out) {
  const auto settings = wanted.value_or(CompressorSettings{.attack = 0, .release = 0});
  const Curve curve = wanted ? compressor_curve(settings)
                             : Curve{.knee_low = kAboveAnyLevel, .knee_high = kAboveAnyLevel};
  require_time("attack", settings.attack);
  require_time("release", settings.release);
  require(settings.range > -600 && settings.range <= 0, "range", settings.range, "dB",
          "above -600 dB and at most 0 dB");
  require_decibels("makeup", settings.makeup);

  out.compSlope = to_float(curve.slope);
  out.compKneeA = to_float(curve.a);
  out.compKneeB = to_float(curve.b);
  out.compKneeC = to_float(curve.c);
  out.compThreshold = to_float(curve.threshold);
  out.compKneeHigh = to_float(curve.knee_high);
  out.compKneeLow = to_float(curve.knee_low);
  out.compRange = to_float(settings.range);
  out.makeupGain = to_float(db_to_linear(settings.makeup));
  out.compAttack = to_float(one_pole_weight(settings.attack, sample_rate));
  out.compRelease = to_float(one_pole_weight(settings.release, sample_rate));
}

// Without an expander its term stays at 0 dB; the default range as for the compressor.
void design_expander(const std::optional<ExpanderSettings>& wanted, double sample_rate,
                     Dyn_SCoefsBlock& out) {
  const auto settings = wanted.value_or(ExpanderSettings{.attack = 0, .release = 0, .hold = 0});
  const Curve curve = wanted ? expander_curve(settings)
                             : Curve{.knee_low = kBelowAnyLevel, .knee_high = kBelowAnyLevel};
  const double hysteresis = settings.hysteresis.value_or(0);
  require_time("attack", settings.attack);
  require_time("release", settings.release);
  require_time("hold", settings.hold);
  require(settings.range > -150 && settings.range <= 0, "range", settings.range, "dB",
          "above -150 dB and at most 0 dB");
  require_within(0, 200, "hysteresis", hysteresis, "dB");

  // Without a hysteresis the gate is always open.
  const double gate_open = settings.hysteresis ? settings.threshold : kBelowAnyLevel;

  out.expSlope = to_float(curve.slope);
  out.expKneeA = to_float(curve.a);
  out.expKneeB = to_float(curve.b);
  out.expKneeC = to_float(curve.c);
  out.expThreshold = to_float(curve.threshold);
  out.gateOpenThreshold = to_float(gate_open);
  out.gateCloseThreshold = to_float(gate_open - hysteresis);
  out.expKneeHigh = to_float(curve.knee_high);
  out.expKneeLow = to_float(curve.knee_low);
  out.expRange = to_float(settings.range);
  out.expAttack = to_float(one_pole_weight(settings.attack, sample_rate));
  out.expRelease = to_float(one_pole_weight(settings.release, sample_rate));
  const double hold = std::round(settings.hold * sample_rate / 1000);
  out.expHoldSamples = static_cast<int32_t>(std::min(hold, kLongestHold));
}

void design_detector(const DetectorSettings& settings, double sample_rate, Dyn_SCoefsBlock& out) {
  require_time("time", settings.time);
  const bool smooth = settings.mode == DetectorMode::kSmooth;
  out.detectorMode = smooth ? 1 : 0;
  out.peakDecay = to_float(decay_factor(settings.time, sample_rate));
  store(smooth ? averaging_section(settings.time, sample_rate) : Section{}, out.detectorFilter);
}

LinkMap design_links(const StripSettings& settings, const ChannelLayout& layout) {
  LinkMap map = default_link_map(layout);
  for (const auto& [name, text] : settings.link) {
    const StemFormat* format = find_stem_format(name);
    if (!format) throw std::invalid_argument(fmt::format("no format is called {}", name));
    if (format->name == layout.format->name) map = parse_link_map(text, layout);
  }
  return map;
}

}  // namespace

StripCoefficients design_strip(const StripSettings& settings, double sample_rate,
                               const ChannelLayout& layout) {
  require(sample_rate > 0 && std::isfinite(sample_rate), "sample rate", sample_rate, "Hz",
          "above 0 and finite");
  require_time("glide", settings.glide);

  StripCoefficients strip{};
  Dyn_SCoefsBlock& dynamics = strip.dynamics;
  strip.eq = design_eq(settings, sample_rate);
  naming("compressor.", [&] { design_compressor(settings.compressor, sample_rate, dynamics); });
  naming("expander.", [&] { design_expander(settings.expander, sample_rate, dynamics); });
  naming("detector.", [&] { design_detector(settings.detector, sample_rate, dynamics); });
  const Section key_filter = naming("key filter: ", [&] {
    return settings.key_filter ? design_stored_band(*settings.key_filter, sample_rate) : Section{};
  });
  store(key_filter, dynamics.keyFilter);
  const LinkMap links = naming("link: ", [&] { return design_links(settings, layout); });
  std::ranges::copy(links, dynamics.linkGroup);
  dynamics.inputMeterGain = 1;
  strip.dezip_rate = to_float(one_pole_weight(settings.glide, sample_rate, 4));
  return strip;
}

}  // namespace channelstrip::host
