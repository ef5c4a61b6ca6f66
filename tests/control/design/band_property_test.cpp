#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

#include "bands.h"
#include "control/design/single_precision.h"
#include "refused.h"

namespace channelstrip::test::band_property_test {
namespace {

using namespace host;

double between(double low, double high) {
  constexpr int kSteps = 1 << 30;
  return low + (high - low) * *rc::gen::inRange(0, kSteps + 1) / kSteps;
}

// Any band at a sample rate of 1, with frequencies (up to half the rate) and Qs spread evenly over
// octaves.
BandSettings any_band() {
  BandSettings band;
  band.type = *rc::gen::elementOf(kEveryType);
  band.design = *rc::gen::elementOf(kBothDesigns);
  band.frequency = std::exp2(between(-18, -1.0001));
  band.q = std::exp2(between(-10, 10));
  band.gain = between(-60, 60);
  band.slope = 6 * *rc::gen::inRange(1, 17);
  if (*rc::gen::arbitrary<bool>()) band.shelf_slope = between(0.01, 1);
  return band;
}

bool is_sound(const Section& s) {
  bool sound = is_stable(s);
  for (const double value : {s.b0, s.b1, s.b2, s.a1, s.a2}) sound &= std::isfinite(value);
  for (const std::complex<double> pole : poles(s)) sound &= std::abs(pole) < 1;
  return sound;
}

RC_GTEST_PROP(BandProperty, EveryBandIsStableAndFinite, ()) {
  const BandSettings band = any_band();
  for (const Section& section : design_band(band, 1)) RC_ASSERT(is_sound(section));
}

// The smallest of the three expressions that must be positive in a stable section.
double stability_margin(const Section& s) {
  return std::min({1 - s.a1 - s.a2, 1 + s.a1 - s.a2, 1 + s.a2});
}

RC_GTEST_PROP(BandProperty, EveryBandThatIsNotRefusedIsStableInFloats, ()) {
  const BandSettings band = any_band();
  if (!refusal_of(band, 1)) {
    for (const Section& section : design_stored_band(band, 1)) {
      RC_ASSERT(is_sound(section));
      for (const double value : {section.b0, section.b1, section.b2, section.a1, section.a2}) {
        RC_ASSERT(value == static_cast<double>(static_cast<float>(value)));
      }
    }
  } else {
    RC_TAG("refused");
    // Rounding moves a1 by up to 2^-24, and a2 by as much and another 2^-25.
    double margin = 1;
    for (const Section& s : design_band(band, 1)) margin = std::min(margin, stability_margin(s));
    RC_ASSERT(margin <= 2.5 * 0x1p-24);
  }
}

RC_GTEST_PROP(BandProperty, NoSearchFindsStableFloatsForABandThatIsRefused, ()) {
  BandSettings band = any_band();
  band.frequency *= 0x1p-6;
  RC_PRE(refusal_of(band, 1).has_value());
  const Sections found = fitted_to_single_precision(design_band(band, 1));
  RC_ASSERT(!std::ranges::all_of(found, is_stable));
}

}  // namespace
}  // namespace channelstrip::test::band_property_test
