#include "section.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace channelstrip::host {
namespace {

// The roots of c0 z^2 + c1 z + c2. The larger is a sum without cancellation, the smaller follows
// from their product.
std::array<std::complex<double>, 2> roots(double c0, double c1, double c2) {
  const double infinity = std::numeric_limits<double>::infinity();
  if (c0 == 0) return {infinity, c1 == 0 ? infinity : -c2 / c1};
  const double half = -c1 / (2 * c0);
  const double product = c2 / c0;
  const double discriminant = half * half - product;
  if (discriminant < 0) {
    const std::complex<double> root(half, std::sqrt(-discriminant));
    return {root, std::conj(root)};
  }
  const double larger = half + std::copysign(std::sqrt(discriminant), half);
  return {larger, larger == 0 ? 0 : product / larger};
}

}  // namespace

std::complex<double> response(const Section& section, double frequency, double sample_rate) {
  const auto z1 = std::polar(1.0, -2 * std::numbers::pi * frequency / sample_rate);
  const auto z2 = z1 * z1;
  return (section.b0 + section.b1 * z1 + section.b2 * z2) /
         (1.0 - section.a1 * z1 - section.a2 * z2);
}

std::complex<double> response(std::span<const Section> sections, double frequency,
                              double sample_rate) {
  std::complex<double> product = 1;
  for (const Section& section : sections) product *= response(section, frequency, sample_rate);
  return product;
}

std::array<std::complex<double>, 2> poles(const Section& section) {
  return roots(1, -section.a1, -section.a2);
}

std::array<std::complex<double>, 2> zeros(const Section& section) {
  return roots(section.b0, section.b1, section.b2);
}

bool is_finite(const Section& s) {
  return std::isfinite(s.b0 + s.b1 + s.b2 + s.a1 + s.a2);
}

bool is_stable(const Section& section) {
  // The stability triangle: the denominator is positive at z = 1 and at z = -1, and the poles'
  // product -a2 lies inside (-1, 1).
  return is_finite(section) && std::abs(section.a2) < 1 && std::abs(section.a1) < 1 - section.a2;
}

void store(const Section& section, float* coefficients) {
  for (const double value : {section.b0, section.b1, section.b2, section.a1, section.a2}) {
    *coefficients++ = static_cast<float>(value);
  }
}

}  // namespace channelstrip::host
