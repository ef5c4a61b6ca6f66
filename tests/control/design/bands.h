// Bands to test, and their responses.

#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <vector>

#include "control/design/band.h"
#include "control/design/dynamics.h"

namespace channelstrip::test {

inline constexpr double kRate = 48000;

inline constexpr std::array kEveryType{
    host::BandType::kPeak,    host::BandType::kLowShelf, host::BandType::kHighShelf,
    host::BandType::kLowPass, host::BandType::kHighPass, host::BandType::kBandPass,
    host::BandType::kNotch,   host::BandType::kAllPass,  host::BandType::kTilt};

inline constexpr std::array kBothDesigns{host::BandDesign::kCookbook, host::BandDesign::kMatched};

// From 20 Hz on 1 - a1 - a2 is 7e-6 or more, so its relative error in doubles is 1e-10 and that of
// the response less than 1e-8 dB.
inline constexpr double kRounding = 1e-8;  // dB

inline double decibels(std::complex<double> value) {
  return host::linear_to_db(std::abs(value));
}

inline double db_at(const host::BandSettings& band, double frequency, double rate = kRate) {
  return decibels(response(design_band(band, rate), frequency, rate));
}

// The output of the section's recurrence from rest, in double precision:
// y = b0 x + z1; z1 := b1 x + a1 y + z2; z2 := b2 x + a2 y.
inline std::vector<double> filtered(const host::Section& section,
                                    const std::vector<double>& input) {
  std::vector<double> output;
  double z1 = 0, z2 = 0;
  for (const double x : input) {
    const double y = section.b0 * x + z1;
    z1 = section.b1 * x + section.a1 * y + z2;
    z2 = section.b2 * x + section.a2 * y;
    output.push_back(y);
  }
  return output;
}

// Calls `check` with bands of `type` at several frequencies, Qs and gains.
template <typename Check>
void for_every_band(host::BandType type, host::BandDesign design, Check check) {
  for (const double frequency : {20.0, 1000.0, 12000.0, 20000.0}) {
    for (const double q : {0.3, 0.7071, 4.0}) {
      for (const double gain : {-18.0, -3.0, 6.0, 24.0}) {
        SCOPED_TRACE(testing::Message()
                     << "type " << static_cast<int>(type) << ", design " << static_cast<int>(design)
                     << ", " << frequency << " Hz, q " << q << ", " << gain << " dB");
        check(host::BandSettings{type, frequency, q, gain, design});
      }
    }
  }
}

template <typename Check>
void for_every_band(host::BandType type, Check check) {
  for (const host::BandDesign design : kBothDesigns) for_every_band(type, design, check);
}

}  // namespace channelstrip::test
