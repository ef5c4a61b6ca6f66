#include "magnitude_fit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace channelstrip::host {

EdgePolynomial numerator(const Section& s) {
  return {s.b0 + s.b1 + s.b2, s.b0 - s.b1 + s.b2, s.b0 - s.b2};
}

EdgePolynomial denominator(const Section& s) {
  return {1 - s.a1 - s.a2, 1 + s.a1 - s.a2, 1 + s.a2};
}

// The denominator's real part is 0 where tan^2(w/2) = low / high, and about there it grows by
// (low + high) / 2 sin(w) per radian; the imaginary part is skew sin(w). Half the width is where
// they are equal. A numerator's dip can be narrower than the poles' resonance.
FitPoints::FitPoints(std::span<const Section> band) {
  double frequency = 0, width = 0;
  for (const Section& section : band) {
    const EdgePolynomial poles = denominator(section), zeros = numerator(section);
    const double own_frequency = 2 * std::atan(std::sqrt(poles.low / poles.high));
    double own_width = 2 * poles.skew / (poles.low + poles.high);
    if (zeros.skew > 0) {
      own_width = std::min(own_width, 2 * zeros.skew / (zeros.low + zeros.high));
    }
    if (frequency == 0 || own_width * frequency < width * own_frequency) {
      frequency = own_frequency;
      width = own_width;
    }
  }
  add(0);
  add(std::numbers::pi);
  for (const double octaves : kFitOctaves) add(frequency * std::exp2(octaves));
  for (const double widths : kFitWidths) {
    add(frequency - widths * width);
    add(frequency + widths * width);
  }
}

void FitPoints::add(double omega) {
  if (!(omega >= 0 && omega <= std::numbers::pi)) return;
  cosine2_[count_] = squared(std::cos(omega / 2));
  sine2_[count_++] = squared(std::sin(omega / 2));
}

// sin^2(w) = 4 cos^2(w/2) sin^2(w/2); see EdgePolynomial.
void FitPoints::multiply(FitValues& values, const EdgePolynomial& p) const {
  for (std::size_t i = 0; i < count_; ++i) {
    values[i] *= squared(p.low * cosine2_[i] - p.high * sine2_[i]) +
                 4 * squared(p.skew) * cosine2_[i] * sine2_[i];
  }
}

void FitPoints::divide(FitValues& values, const EdgePolynomial& p) const {
  FitValues divisor;
  divisor.fill(1);
  multiply(divisor, p);
  for (std::size_t i = 0; i < count_; ++i) values[i] /= divisor[i];
}

double NumeratorFit::error(const EdgePolynomial& numerator) const {
  FitValues values = gain;
  points.multiply(values, numerator);
  double greatest = 0;
  for (std::size_t i = 0; i < points.count(); ++i) {
    greatest = std::max(greatest, std::abs(values[i] - wanted[i]));
  }
  return greatest;
}

double NumeratorFit::best_factor(const EdgePolynomial& shape) const {
  FitValues values = gain;
  points.multiply(values, shape);
  double product = 0, square = 0;
  for (std::size_t i = 0; i < points.count(); ++i) {
    product += values[i] * wanted[i];
    square += values[i] * values[i];
  }
  return std::sqrt(product / square);
}

// With c = cos^2(w/2) and s = sin^2(w/2) the squared magnitude is
//   low^2 c^2 + high^2 s^2 + (4 skew^2 - 2 low high) c s
// and thus linear in high^2 and in what stands in parentheses, `mixed` below.
EdgePolynomial NumeratorFit::best_polynomial(double low) const {
  double hh = 0, hm = 0, mm = 0, ht = 0, mt = 0;
  for (std::size_t i = 0; i < points.count(); ++i) {
    const double c = points.cosine2(i), s = points.sine2(i);
    const double h = gain[i] * s * s, m = gain[i] * s * c;
    const double t = wanted[i] - gain[i] * squared(low * c);
    hh += h * h;
    hm += h * m;
    mm += m * m;
    ht += h * t;
    mt += m * t;
  }
  const double determinant = hh * mm - hm * hm;
  const double high = std::sqrt(std::max(0.0, (ht * mm - mt * hm) / determinant));
  const double mixed = (mt * hh - ht * hm) / determinant;
  return {low, high, std::sqrt(std::max(0.0, mixed / 4 + low * high / 2))};
}

}  // namespace channelstrip::host
