#include "dynamics_coefficients.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "averaging_section.h"
#include "dynamics.h"
#include "link_map.h"

namespace channelstrip::host {
namespace {

// Detector levels lie between -765 dB, the least float, and 771 dB, infinity.
constexpr double kBelowAnyLevel = -1000;
constexpr double kAboveAnyLevel = 1000;

constexpr double kLongestHold = std::numeric_limits<int32_t>::max();  // samples

float to_float(double value) {
  return static_cast<float>(value);
}

}  // namespace

// Without a compressor its range has no effect. It gets the default all the same: a compressor that
// is switched on later glides from there, and not from a range of 0 dB. The same holds for the
// expander.
void design_compressor(const std::optional<CompressorSettings>& wanted, double sample_rate,
                       Dyn_SCoefsBlock& out) {
  const auto settings = wanted.value_or(CompressorSettings{.attack = 0, .release = 0});
  const Curve curve = wanted ? compressor_curve(settings)
                             : Curve{.knee_low = kAboveAnyLevel, .knee_high = kAboveAnyLevel};
  const double makeup_of_curve = wanted && wanted->auto_makeup ? auto_makeup(*wanted) : 0;

  out.compSlope = to_float(curve.slope);
  out.compKneeA = to_float(curve.a);
  out.compKneeB = to_float(curve.b);
  out.compKneeC = to_float(curve.c);
  out.compThreshold = to_float(curve.threshold);
  out.compKneeHigh = to_float(curve.knee_high);
  out.compKneeLow = to_float(curve.knee_low);
  out.compRange = to_float(settings.range);
  out.makeupGain = to_float(db_to_linear(settings.makeup + makeup_of_curve));
  out.compAttack = to_float(one_pole_weight(settings.attack, sample_rate));
  out.compRelease = to_float(one_pole_weight(settings.release, sample_rate));
}

void design_expander(const std::optional<ExpanderSettings>& wanted, double sample_rate,
                     Dyn_SCoefsBlock& out) {
  const auto settings = wanted.value_or(ExpanderSettings{.attack = 0, .release = 0, .hold = 0});
  const Curve curve = wanted ? expander_curve(settings)
                             : Curve{.knee_low = kBelowAnyLevel, .knee_high = kBelowAnyLevel};
  const double hysteresis = settings.hysteresis.value_or(0);
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
  // A peak that decays at once would be 0 at every sample that isn't above the one before. What is
  // meant is the level itself, as an average of no time gives it.
  const bool holds_peaks = settings.mode == DetectorMode::kPeak && settings.time > 0;
  out.detectorMode = holds_peaks ? 0 : 1;
  out.peakDecay = to_float(decay_factor(settings.time, sample_rate));
  store(detector_section(settings, sample_rate), out.detectorFilter);
}

void design_links(const StripSettings& settings, const ChannelLayout& layout,
                  Dyn_SCoefsBlock& out) {
  std::ranges::copy(read_links(settings, layout).map, out.linkGroup);
}

LinkMap links_of(const Dyn_SCoefsBlock& dynamics) {
  LinkMap map{};
  std::ranges::copy(dynamics.linkGroup, map.begin());
  return map;
}

void design_modes(const StripSettings& settings, Dyn_SCoefsBlock& out) {
  out.keyEnable = settings.key_enable ? 1 : 0;
  out.keyListen = settings.key_listen ? 1 : 0;
  out.inputMeterGain = to_float(db_to_linear(settings.input_meter_gain));
  out.bypass = settings.bypass ? 1 : 0;
}

}  // namespace channelstrip::host
