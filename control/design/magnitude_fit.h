// Fits a section's numerator, where its denominator and all else are given, to wanted magnitudes at
// some frequencies.

#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "edge_polynomial.h"
#include "section.h"

namespace channelstrip::host {

EdgePolynomial numerator(const Section& section);
EdgePolynomial denominator(const Section& section);

// Frequencies at which a band's magnitude is compared: relative to the band's own, in octaves, and
// relative to half the width of its narrowest resonance, to either side.
inline constexpr std::array kFitOctaves{-5.0, -2.5, -1.5, -1.0, -0.5, -0.25, 0.0,
                                        0.25, 0.5,  1.0,  1.5,  2.5,  5.0,   8.0};
inline constexpr std::array kFitWidths{0.05, 0.2, 0.5, 0.9, 1.5, 2.5};
inline constexpr std::size_t kFitPoints = 2 + kFitOctaves.size() + 2 * kFitWidths.size();

// A value for each of these frequencies; those beyond the range from 0 to half the rate aren't
// used.
using FitValues = std::array<double, kFitPoints>;

// cos^2(w/2) and sin^2(w/2); the first frequency is 0 Hz.
class FitPoints {
 public:
  FitPoints() = default;
  explicit FitPoints(std::span<const Section> band);

  std::size_t count() const { return count_; }
  double cosine2(std::size_t i) const { return cosine2_[i]; }
  double sine2(std::size_t i) const { return sine2_[i]; }

  // By the polynomial's squared magnitude.
  void multiply(FitValues& values, const EdgePolynomial& polynomial) const;
  void divide(FitValues& values, const EdgePolynomial& polynomial) const;

  // By the section's squared magnitude.
  void apply(FitValues& values, const Section& section) const {
    multiply(values, numerator(section));
    divide(values, denominator(section));
  }

 private:
  void add(double omega);

  FitValues cosine2_ = {}, sine2_ = {};
  std::size_t count_ = 0;
};

// The numerator's squared magnitude times `gain` shall be `wanted`.
struct NumeratorFit {
  const FitPoints& points;
  const FitValues& wanted;
  FitValues gain;

  // The greatest difference from what is wanted.
  double error(const EdgePolynomial& numerator) const;

  // The rest are best in the sense of least squares: the factor for the coefficients of `shape`, or
  // `high` and `skew` beside a `low` that is given.
  double best_factor(const EdgePolynomial& shape) const;
  EdgePolynomial best_polynomial(double low) const;
};

}  // namespace channelstrip::host
