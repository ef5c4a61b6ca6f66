// One second-order section: y = b0 x + z1; z1 := b1 x + a1 y + z2; z2 := b2 x + a2 y.

#pragma once

#include <cmath>

namespace channelstrip::model {

// The order of the sums is free, so implementations may differ in the last bits. Where the results
// of the first three legal orders differ, their spread bounds any other order, such as the fourth.
enum class SumOrder {
  kInputFirst,       // (z2 + b1 x) + a1 y
  kFeedbackFirst,    // (z2 + a1 y) + b1 x
  kProductsFirst,    // (b1 x + a1 y) + z2
  kProductsSwapped,  // (a1 y + b1 x) + z2
};

template <typename Real>
struct Section {
  template <typename Stored>
  explicit Section(const Stored* c)
      : b0(Real(c[0])), b1(Real(c[1])), b2(Real(c[2])), a1(Real(c[3])), a2(Real(c[4])) {}

  Real b0, b1, b2, a1, a2;
};

// Processes one sample. The terms of a1 and a2 are added.
template <typename Real>
Real run_section(const Section<Real>& c, Real x, Real& z1, Real& z2, SumOrder order) {
  const Real y = std::fma(c.b0, x, z1);
  switch (order) {
    case SumOrder::kInputFirst:
      z1 = std::fma(c.a1, y, std::fma(c.b1, x, z2));
      z2 = std::fma(c.a2, y, c.b2 * x);
      break;
    case SumOrder::kFeedbackFirst:
      z1 = std::fma(c.b1, x, std::fma(c.a1, y, z2));
      z2 = std::fma(c.b2, x, c.a2 * y);
      break;
    case SumOrder::kProductsFirst:
      z1 = std::fma(c.a1, y, c.b1 * x) + z2;
      z2 = std::fma(c.a2, y, c.b2 * x);
      break;
    case SumOrder::kProductsSwapped:
      z1 = std::fma(c.b1, x, c.a1 * y) + z2;
      z2 = std::fma(c.b2, x, c.a2 * y);
      break;
  }
  return y;
}

}  // namespace channelstrip::model
