#include "bilinear.h"

#include <cmath>

namespace channelstrip::host {
namespace {

// Coefficients of z^0, z^-1 and z^-2.
struct Taps {
  double c0, c1, c2;
};

// The polynomial times sin^2(w/2) (1 + z^-1)^2, or sin(w/2) (1 + z^-1) for one of first order.
Taps transform(const Polynomial& analog, int order, double sine, double cosine) {
  if (order == 1) {
    const double low = analog.c0 * sine;
    const double high = analog.c1 * cosine;
    return {low + high, low - high, 0};
  }
  const double low = analog.c0 * sine * sine;
  const double middle = analog.c1 * sine * cosine;
  const double high = analog.c2 * cosine * cosine;
  return {low + high + middle, 2 * (low - high), low + high - middle};
}

}  // namespace

Section bilinear(const AnalogSection& analog, double omega) {
  const int order = analog.denominator.c2 == 0 ? 1 : 2;
  const double sine = std::sin(omega / 2);
  const double cosine = std::cos(omega / 2);
  const Taps b = transform(analog.numerator, order, sine, cosine);
  const Taps a = transform(analog.denominator, order, sine, cosine);
  return {b.c0 / a.c0, b.c1 / a.c0, b.c2 / a.c0, -a.c1 / a.c0, -a.c2 / a.c0};
}

}  // namespace channelstrip::host
