#include "prototype.h"

#include <cmath>
#include <numbers>

namespace channelstrip::host {
namespace {

bool is_shelf(BandType type) {
  return type == BandType::kLowShelf || type == BandType::kHighShelf;
}

int pass_order(const BandSettings& band) {
  return band.slope / 6;
}

// A + 1 / A, A being the square root of the linear gain.
double sum_of_gains(double gain) {
  const double a = std::pow(10, gain / 40);
  return a + 1 / a;
}

// `a` is the square root of the linear gain, `d` the damping 1 / Q.
AnalogSection second_order(BandType type, double a, double d) {
  const Polynomial resonance{1, d, 1};
  const double root = std::sqrt(a);
  switch (type) {
    case BandType::kPeak:
      return {{1, d * a, 1}, {1, d / a, 1}};
    case BandType::kLowShelf:
      return {{a * a, a * root * d, a}, {1, root * d, a}};
    case BandType::kHighShelf:
      return {{a, a * root * d, a * a}, {a, root * d, 1}};
    case BandType::kLowPass:
      return {{1, 0, 0}, resonance};
    case BandType::kHighPass:
      return {{0, 0, 1}, resonance};
    case BandType::kBandPass:
      return {{0, d, 0}, resonance};
    case BandType::kNotch:
      return {{1, 0, 1}, resonance};
    case BandType::kAllPass:
      return {{1, -d, 1}, resonance};
    case BandType::kTilt:
      break;
  }
  return {{1, a, 0}, {a, 1, 0}};
}

AnalogSection first_order_pass(BandType type) {
  const bool low = type == BandType::kLowPass;
  return {{low ? 1.0 : 0.0, low ? 0.0 : 1.0, 0}, {1, 1, 0}};
}

// The poles stand on the unit circle, (2k + 1) pi / 2n from the imaginary axis.
AnalogSections butterworth(BandType type, int order) {
  AnalogSections sections;
  if (order % 2 == 1) sections.push_back(first_order_pass(type));
  for (int k = order / 2 - 1; k >= 0; --k) {
    const double angle = std::numbers::pi * (2 * k + 1) / (2 * order);
    sections.push_back(second_order(type, 1, 2 * std::sin(angle)));
  }
  return sections;
}

std::complex<double> value(const Polynomial& c, double frequency) {
  return {c.c0 - c.c2 * frequency * frequency, c.c1 * frequency};
}

}  // namespace

bool uses_slope(const BandSettings& band) {
  return band.type == BandType::kLowPass || band.type == BandType::kHighPass;
}

bool uses_q(const BandSettings& band) {
  if (uses_slope(band)) return band.slope == 12;
  return band.type != BandType::kTilt && !uses_shelf_slope(band);
}

bool uses_gain(const BandSettings& band) {
  return band.type == BandType::kPeak || is_shelf(band.type) || band.type == BandType::kTilt;
}

bool uses_shelf_slope(const BandSettings& band) {
  return is_shelf(band.type) && band.shelf_slope.has_value();
}

int section_count(const BandSettings& band) {
  return uses_slope(band) ? (pass_order(band) + 1) / 2 : 1;
}

// Below the limit the square of a shelf's 1 / Q is above 0.
double q_of(const BandSettings& band) {
  if (!uses_shelf_slope(band)) return band.q;
  return 1 / std::sqrt(sum_of_gains(band.gain) * (1 / *band.shelf_slope - 1) + 2);
}

double shelf_slope_limit(double gain) {
  const double sum = sum_of_gains(gain);
  return sum / (sum - 2);
}

AnalogSections prototype(const BandSettings& band) {
  if (uses_slope(band) && pass_order(band) != 2) return butterworth(band.type, pass_order(band));
  const double a = uses_gain(band) ? std::pow(10, band.gain / 40) : 1;
  const double damping = band.type == BandType::kTilt ? 0 : 1 / q_of(band);
  return {second_order(band.type, a, damping)};
}

std::complex<double> analog_response(const BandSettings& band, double frequency) {
  const double ratio = frequency / band.frequency;
  std::complex<double> product = 1;
  for (const AnalogSection& section : prototype(band)) {
    product *= value(section.numerator, ratio) / value(section.denominator, ratio);
  }
  return product;
}

}  // namespace channelstrip::host
