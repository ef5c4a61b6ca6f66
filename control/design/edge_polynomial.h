// A polynomial in z^-1 by its values at the edges of the spectrum.

#pragma once

#include "prototype.h"
#include "section.h"

namespace channelstrip::host {

inline double squared(double value) {
  return value * value;
}

// c0 + c1 z^-1 + c2 z^-2. On the unit circle, at w radians per sample, its squared magnitude is
//   (low cos^2(w/2) - high sin^2(w/2))^2 + (skew sin w)^2
// free of the cancellation that c0, c1 and c2 suffer at low frequencies. With all three above 0
// both roots lie inside the unit circle.
struct EdgePolynomial {
  double low;   // c0 + c1 + c2, the value at 0 Hz
  double high;  // c0 - c1 + c2, at half the sample rate
  double skew;  // c0 - c2
};

EdgePolynomial first_order(double low, double high);  // the one with c2 = 0

double squared_magnitude(const EdgePolynomial& polynomial, double omega);

// By impulse invariance: each root s becomes e^(s w), w the band's frequency in radians per sample.
// The roots must lie left of the imaginary axis.
EdgePolynomial impulse_invariant(const Polynomial& analog, double omega);

struct EdgeSection {
  EdgePolynomial numerator, denominator;
};

Section section_of(const EdgeSection& edges);

}  // namespace channelstrip::host
