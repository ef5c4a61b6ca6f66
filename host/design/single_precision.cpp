#include "single_precision.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "magnitude_fit.h"

namespace channelstrip::host {
namespace {

// GCC 12 drops the rounding where it vectorises two of these conversions; volatile prevents that.
double nearest_float(double value) {
  const volatile float rounded = static_cast<float>(value);
  return static_cast<double>(rounded);
}

// The distance from a float's magnitude to the next one.
double step_at(double value) {
  const auto magnitude = static_cast<float>(std::abs(value));
  const float next = std::nextafter(magnitude, std::numeric_limits<float>::infinity());
  return static_cast<double>(next - magnitude);
}

bool is_all_pass(const Section& section) {
  return section.b0 == -section.a2 && section.b1 == -section.a1 && section.b2 == 1;
}

// Whether rounding, by at most half a step of 2^-23, can move a pole by more than 6e-5 of its
// frequency's square or its width, or a notch's zeros by more than 1e-6. Without this a band is
// good to 0.03 dB at a Q of 100 and far better below.
bool is_coarse(const Section& section) {
  const EdgePolynomial poles = denominator(section), zeros = numerator(section);
  const bool is_notch = zeros.skew == 0 && zeros.low > 0 && zeros.high > 0;
  return poles.low < (is_notch ? 0.05 : 1e-3) || poles.skew < 1e-3;
}

// Second order, with zeros inside the unit circle or on it.
bool can_be_fitted(const Section& section) {
  const EdgePolynomial zeros = numerator(section);
  const bool first_order = section.b2 == 0 && section.a2 == 0;
  return !first_order && !is_all_pass(section) && section.b0 > 0 && zeros.low >= 0 &&
         zeros.high >= 0 && zeros.skew >= 0;
}

// `low` comes out exactly as wanted if it is a multiple of b0's and b2's steps. A numerator of
// first order stays one.
void set_numerator(Section& section, const EdgePolynomial& wanted) {
  section.b1 = nearest_float((wanted.low - wanted.high) / 2);
  const double sum = wanted.high == 0 ? section.b1 : wanted.low - section.b1;  // b0 + b2
  section.b0 = nearest_float(section.b2 == 0 ? sum : (sum + wanted.skew) / 2);
  if (section.b2 != 0) section.b2 = nearest_float(sum - section.b0);
}

struct Candidate {
  Section section;
  double error;  // of the band's squared magnitude, relative
};

// Whether the zeros lie about where the poles do, as those of peaks, shelves and notches. Zeros of
// other types lie far from the poles or exactly at 0 Hz: rounding doesn't move them.
bool zeros_follow_poles(const EdgePolynomial& zeros, const EdgePolynomial& poles) {
  return zeros.low > 0 && zeros.low * poles.high < 1e4 * zeros.high * poles.low;
}

// Gives `section`, whose denominator is of floats, numerators with a shape like that of `exact`.
void try_numerators(const NumeratorFit& fit, const EdgePolynomial& exact, Section section,
                    Candidate& best) {
  const auto consider = [&](const EdgePolynomial& wanted) {
    set_numerator(section, wanted);
    const double error = fit.error(numerator(section));
    if (error < best.error) best = {section, error};
  };
  const auto scaled = [&exact](double factor) {
    return EdgePolynomial{factor * exact.low, factor * exact.high, factor * exact.skew};
  };
  if (!zeros_follow_poles(exact, denominator(section))) {
    return consider(scaled(fit.best_factor(exact)));
  }
  const double step = step_at(section.b0);
  const double steps = std::floor(std::sqrt(fit.wanted[0] / fit.gain[0]) / step);
  for (const double low : {steps * step, (steps + 1) * step}) {
    // A notch's zeros stay at their frequency.
    consider(exact.skew == 0 ? scaled(low / exact.low) : fit.best_polynomial(low));
  }
}

constexpr int kFeedbackSteps = 4;     // to either side of a1
constexpr int kDenominatorSteps = 2;  // and of 1 - a1 - a2

// The best section in place of `rounded`. `gain` holds the squared magnitudes of the others.
Section best_section(const FitPoints& points, const FitValues& wanted, const FitValues& gain,
                     const Section& exact, const Candidate& rounded) {
  Candidate best = rounded;
  const double low = denominator(exact).low;
  const double a1 = nearest_float(exact.a1);
  for (int i = -kFeedbackSteps; i <= kFeedbackSteps; ++i) {
    Section section = exact;
    section.a1 = a1 + i * step_at(a1);
    const double a2 = nearest_float(1 - section.a1 - low);
    for (int j = -kDenominatorSteps; j <= kDenominatorSteps; ++j) {
      section.a2 = a2 + j * step_at(a2);
      if (!is_stable(section)) continue;
      NumeratorFit fit{points, wanted, gain};
      points.divide(fit.gain, denominator(section));
      try_numerators(fit, numerator(exact), section, best);
    }
  }
  return best.section;
}

constexpr double kGoodEnough = 1e-3;  // of the squared magnitude, 0.005 dB
constexpr double kInaudible = 1e-6;   // of the greatest squared magnitude, 60 dB

}  // namespace

Section rounded_section(const Section& section) {
  const double sum = denominator(section).low;
  const double gain = numerator(section).low / sum;  // at 0 Hz
  Section rounded;
  rounded.a1 = nearest_float(section.a1);
  rounded.a2 = nearest_float(1 - rounded.a1 - sum);
  if (is_all_pass(section)) return {-rounded.a2, -rounded.a1, 1, rounded.a1, rounded.a2};
  rounded.b0 = nearest_float(section.b0);
  rounded.b1 = nearest_float(section.b1);
  rounded.b2 = nearest_float(gain * (1 - rounded.a1 - rounded.a2) - rounded.b0 - rounded.b1);
  return rounded;
}

void fit_to_single_precision(std::span<Section> band) {
  if (std::ranges::none_of(band, is_coarse)) {
    std::ranges::transform(band, band.begin(), rounded_section);
    return;
  }
  const FitPoints points(band);
  FitValues wanted;
  wanted.fill(1);
  std::array<Section, 8> exact;
  for (std::size_t i = 0; i < band.size(); ++i) {
    points.apply(wanted, band[i]);
    exact[i] = std::exchange(band[i], rounded_section(band[i]));
  }
  if (!std::ranges::all_of(band, is_stable)) return;

  const auto used = std::span(wanted).first(points.count());
  const double silence = kInaudible * *std::ranges::max_element(used);
  FitValues scale;
  for (std::size_t i = 0; i < points.count(); ++i) {
    scale[i] = 1 / std::max(wanted[i], silence);
    wanted[i] *= scale[i];
  }
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = band.size(); i-- > 0;) {  // the most resonant first
      FitValues others = scale;
      for (std::size_t k = 0; k < band.size(); ++k) {
        if (k != i) points.apply(others, band[k]);
      }
      NumeratorFit present{points, wanted, others};
      points.divide(present.gain, denominator(band[i]));
      const double error = present.error(numerator(band[i]));
      if (error < kGoodEnough) return;
      if (!can_be_fitted(exact[i])) continue;
      band[i] = best_section(points, wanted, others, exact[i], {band[i], error});
    }
  }
}

}  // namespace channelstrip::host
