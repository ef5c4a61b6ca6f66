#include "edge_polynomial.h"

#include <array>
#include <cmath>

namespace channelstrip::host {
namespace {

std::array<double, 3> coefficients(const EdgePolynomial& p) {
  const double sum = (p.low + p.high) / 2;  // c0 + c2
  return {(sum + p.skew) / 2, (p.low - p.high) / 2, (sum - p.skew) / 2};
}

}  // namespace

EdgePolynomial first_order(double low, double high) {
  return {low, high, (low + high) / 2};
}

double squared_magnitude(const EdgePolynomial& p, double omega) {
  const double low_share = squared(std::cos(omega / 2));
  const double high_share = squared(std::sin(omega / 2));
  return squared(p.low * low_share - p.high * high_share) + squared(p.skew * std::sin(omega));
}

EdgePolynomial impulse_invariant(const Polynomial& analog, double omega) {
  if (analog.c2 == 0) {
    const double decay = omega * analog.c0 / analog.c1;
    return first_order(-std::expm1(-decay), 1 + std::exp(-decay));
  }
  const double decay = omega * analog.c1 / (2 * analog.c2);
  const double product = omega * omega * analog.c0 / analog.c2;
  const double skew = -std::expm1(-2 * decay);
  const double discriminant = decay * decay - product;
  if (discriminant < 0) {
    const double half_angle = std::sqrt(-discriminant) / 2;
    const double radius = std::exp(-decay);
    const double common = squared(std::expm1(-decay));  // (1 - radius)^2
    return {common + 4 * radius * squared(std::sin(half_angle)),
            common + 4 * radius * squared(std::cos(half_angle)), skew};
  }
  const double fast = decay + std::sqrt(discriminant);
  const double slow = product / fast;
  return {std::expm1(-fast) * std::expm1(-slow), (1 + std::exp(-fast)) * (1 + std::exp(-slow)),
          skew};
}

Section section_of(const EdgeSection& edges) {
  const auto [b0, b1, b2] = coefficients(edges.numerator);
  const auto [a0, a1, a2] = coefficients(edges.denominator);
  return {b0 / a0, b1 / a0, b2 / a0, -a1 / a0, -a2 / a0};
}

}  // namespace channelstrip::host
