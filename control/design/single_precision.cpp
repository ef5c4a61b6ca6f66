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
  Section& section;
  double& error;
};

// Whether the zeros lie about where the poles do, as those of peaks, shelves and notches. Zeros of
// other types lie far from the poles or exactly at 0 Hz: rounding doesn't move them.
bool zeros_follow_poles(const EdgePolynomial& zeros, const EdgePolynomial& poles) {
  return zeros.low > 0 && zeros.low * poles.high < 1e4 * zeros.high * poles.low;
}

// Gives `section`, whose denominator is of floats, numerators with a shape like that of `exact`.
void try_numerators(const NumeratorFit& fit, const EdgePolynomial& exact, Section section,
                    Candidate best) {
  const auto consider = [&](const EdgePolynomial& wanted) {
    set_numerator(section, wanted);
    const double error = fit.error(numerator(section));
    if (error < best.error && is_finite(section)) {
      best.section = section;
      best.error = error;
    }
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

constexpr int kFeedbacks = 2 * kFeedbackSteps + 1;
constexpr int kDenominators = 2 * kDenominatorSteps + 1;
constexpr int kTries = kFeedbacks * kDenominators;
constexpr int kTriesPerStep = 2;

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

PrecisionSearch::PrecisionSearch(const Sections& exact) : exact_(exact), band_(exact) {
  std::ranges::transform(exact, band_.begin(), rounded_section);
  const bool worthwhile =
      std::ranges::any_of(exact, is_coarse) && std::ranges::all_of(band_, is_stable);
  state_ = worthwhile ? State::kPoints : State::kDone;
}

void PrecisionSearch::step() {
  switch (state_) {
    case State::kPoints:
      return find_points();
    case State::kSection:
      return begin_section();
    case State::kPairs:
      for (int i = 0; i < kTriesPerStep && pair_ < kTries; ++i) try_pair();
      if (pair_ == kTries) end_section();
      return;
    case State::kDone:
      return;
  }
}

void PrecisionSearch::find_points() {
  points_ = FitPoints(exact_);
  wanted_.fill(1);
  for (const Section& section : exact_) points_.apply(wanted_, section);
  const auto used = std::span(wanted_).first(points_.count());
  const double silence = kInaudible * *std::ranges::max_element(used);
  for (std::size_t i = 0; i < points_.count(); ++i) {
    scale_[i] = 1 / std::max(wanted_[i], silence);
    wanted_[i] *= scale_[i];
  }
  at_ = exact_.size() - 1;  // the most resonant
  state_ = State::kSection;
}

void PrecisionSearch::begin_section() {
  others_ = scale_;  // with the squared magnitudes of all sections but this one
  for (std::size_t k = 0; k < band_.size(); ++k) {
    if (k != at_) points_.apply(others_, band_[k]);
  }
  NumeratorFit present{points_, wanted_, others_};
  points_.divide(present.gain, denominator(band_[at_]));
  best_ = band_[at_];
  best_error_ = present.error(numerator(band_[at_]));
  if (best_error_ < kGoodEnough) {
    state_ = State::kDone;
  } else if (can_be_fitted(exact_[at_])) {
    pair_ = 0;
    state_ = State::kPairs;
  } else {
    end_section();
  }
}

void PrecisionSearch::try_pair() {
  const int i = pair_ / kDenominators - kFeedbackSteps;
  const int j = pair_ % kDenominators - kDenominatorSteps;
  ++pair_;
  const Section& exact = exact_[at_];
  Section section = exact;
  const double a1 = nearest_float(exact.a1);
  section.a1 = a1 + i * step_at(a1);
  const double a2 = nearest_float(1 - section.a1 - denominator(exact).low);
  section.a2 = a2 + j * step_at(a2);
  if (!is_stable(section)) return;
  NumeratorFit fit{points_, wanted_, others_};
  points_.divide(fit.gain, denominator(section));
  try_numerators(fit, numerator(exact), section, {best_, best_error_});
}

void PrecisionSearch::end_section() {
  band_[at_] = best_;
  state_ = State::kSection;
  if (at_-- > 0) return;
  at_ = exact_.size() - 1;
  if (++round_ == 2) state_ = State::kDone;
}

Sections fitted_to_single_precision(const Sections& exact) {
  PrecisionSearch search(exact);
  while (!search.is_done()) search.step();
  return search.sections();
}

}  // namespace channelstrip::host
