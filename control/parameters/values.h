// A value for every parameter, and the settings that a strip makes of them.

#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "../design/fixed_vector.h"
#include "../design/settings.h"
#include "parameters.h"

namespace channelstrip::host {

// One plain object. Each value is one that nearest_value() gives.
struct Values {
  std::array<double, kParameterCount> of;
  LinkTexts links;  // maps of formats, which take the link style's place

  Values();  // the initial ones
  bool operator==(const Values&) const = default;
};

// What a strip can't have as it is wanted, and what it has instead.
enum class Adjustment : std::uint8_t {
  kLeftOutAboveRate,    // a band whose frequency isn't below 0.4998 of the sample rate
  kLeftOutForSections,  // a band for which no section is left; bands take them in order
  kRaised,    // a frequency below 3e-5 of the sample rate, to this; below up to 9.5e-5 where
              // a shelf raises the lows or lowers the highs
  kShallower  // a slope that takes more sections than are left, or than a key filter has
};
struct Adjusted {
  std::size_t parameter;  // index
  Adjustment adjustment;
  double used;  // in place of the value; 0 for a band that is left out
};
using AdjustedList = FixedVector<Adjusted, 2 * (kBandCount + 1)>;

// Settings that a strip can have, whatever the values. What the values can't mean together is
// changed by the rules above, and noted in `adjusted` unless that is null. Without allocation,
// exception or lock.
StripSettings settings_of(const Values& values, double sample_rate,
                          AdjustedList* adjusted = nullptr);

// The band of a group of parameters, 0 .. 7 or kBandCount for the key filter, as its values say.
EqBand band_of(const Values& values, std::size_t band);

}  // namespace channelstrip::host
