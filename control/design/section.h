// A second-order section of a filter: what its coefficients do.

#pragma once

#include <array>
#include <complex>
#include <span>

#include "fixed_vector.h"

namespace channelstrip::host {

// Normalised (a0 = 1); a1 and a2 carry the sign with which they are added:
//   H(z) = (b0 + b1 z^-1 + b2 z^-2) / (1 - a1 z^-1 - a2 z^-2)
// A first-order section has b2 = a2 = 0.
struct Section {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
};

// As many as a strip runs.
inline constexpr std::size_t kMostSections = 8;
using Sections = FixedVector<Section, kMostSections>;

// H at `frequency`, both in Hz; of several sections in a row, the product.
std::complex<double> response(const Section& section, double frequency, double sample_rate);
std::complex<double> response(std::span<const Section> sections, double frequency,
                              double sample_rate);

// The roots in z of the denominator; those that a lower order lacks are 0.
std::array<std::complex<double>, 2> poles(const Section& section);

// The roots in z of the numerator; where b0 is 0 one or both lie at infinity.
std::array<std::complex<double>, 2> zeros(const Section& section);

// Whether both poles lie inside the unit circle; false for coefficients that aren't finite.
bool is_stable(const Section& section);

// Whether all coefficients are.
bool is_finite(const Section& section);

// Writes b0, b1, b2, a1, a2 as floats, in the order of the library's records.
void store(const Section& section, float* coefficients);

}  // namespace channelstrip::host
