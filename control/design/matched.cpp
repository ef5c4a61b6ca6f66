#include "matched.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "edge_polynomial.h"

namespace channelstrip::host {
namespace {

constexpr double kPi = std::numbers::pi;

double squared_magnitude(const Polynomial& p, double frequency) {
  return squared(p.c0 - p.c2 * frequency * frequency) + squared(p.c1 * frequency);
}

// |H|^2 at `frequency`, in units of the band's.
double squared_magnitude(const AnalogSection& analog, double frequency) {
  return squared_magnitude(analog.numerator, frequency) /
         squared_magnitude(analog.denominator, frequency);
}

template <typename AnySection>
AnySection inverse(const AnySection& section) {
  return {section.denominator, section.numerator};
}

// cos^2 and sin^2 of w/2: how much the two edges count at w.
struct Shares {
  explicit Shares(double omega)
      : low(squared(std::cos(omega / 2))), high(squared(std::sin(omega / 2))) {}
  double low, high;
};

// Exact at 0 Hz and at the cut-off. A second zero could make half the sample rate exact too, but is
// far less accurate for cut-offs close to it.
EdgeSection low_pass(const AnalogSection& analog, double omega) {
  const EdgePolynomial poles = impulse_invariant(analog.denominator, omega);
  const Shares share(omega);
  const double wanted = squared_magnitude(analog, 1) * squared_magnitude(poles, omega);
  const double high = (wanted - squared(poles.low) * share.low) / share.high;
  return {first_order(poles.low, std::sqrt(high)), poles};
}

// All zeros at z = 1, exact at the cut-off.
EdgeSection high_pass(const AnalogSection& analog, double omega) {
  const EdgePolynomial poles = impulse_invariant(analog.denominator, omega);
  const double wanted = std::sqrt(squared_magnitude(analog, 1) * squared_magnitude(poles, omega));
  const double sine = std::sin(omega / 2);
  if (analog.denominator.c2 == 0) return {first_order(0, wanted / sine), poles};
  return {{0, wanted / squared(sine), 0}, poles};
}

// high sin^2(w/2) - low cos^2(w/2) of the mapped poles of 1 + c1 s + s^2: above 0, and at high Q
// far smaller than its terms.
double overhang(const Polynomial& analog, const EdgePolynomial& mapped, double omega) {
  const double decay = omega * analog.c1 / 2;
  const double radius = std::exp(-decay);
  if (decay >= omega) return 2 * (1 + squared(radius)) * Shares(omega).high - mapped.low;
  const double sum = omega + std::sqrt((omega - decay) * (omega + decay));
  return 4 * radius *
         (std::sin(sum / 2) * std::sin(squared(decay) / (2 * sum)) -
          squared(std::sinh(decay / 2)) * std::cos(omega));
}

// A band-pass, or a peak of 0 dB or more. Exact at 0 Hz and at its frequency, where the slope is 0
// too. If half the sample rate were exact instead of the slope, the peak would move.
EdgeSection resonance(const AnalogSection& analog, double omega) {
  const EdgePolynomial poles = impulse_invariant(analog.denominator, omega);
  const double gain = squared(analog.numerator.c1 / analog.denominator.c1);
  const double excess = overhang(analog.denominator, poles, omega);
  const Shares share(omega);

  // |N|^2 = gain |D|^2 and the same for the derivatives, solved for N's high sin^2(w/2).
  const double start = analog.numerator.c0 * poles.low * share.low;
  const double product = gain * excess * (2 * poles.low * share.low + excess);
  const double end = std::sqrt(squared(start) + product);
  const double difference = product / (start + end);
  const double skew = gain * squared(poles.skew) +
                      (gain * squared(excess) - squared(difference)) / squared(std::sin(omega));
  return {{analog.numerator.c0 * poles.low, end / share.high, std::sqrt(skew)}, poles};
}

// A cut is the inverse of its boost: mapping the narrower of the two resonances is more accurate,
// and a deep cut's zeros could not be matched with real coefficients.
EdgeSection peak(const AnalogSection& analog, double omega) {
  if (analog.numerator.c1 >= analog.denominator.c1) return resonance(analog, omega);
  return inverse(resonance(inverse(analog), omega));
}

// A shelf whose poles are at the lower end of its slope. Exact at 0 Hz, at half the sample rate and
// at the corner, or at a quarter of the rate if that is lower. Matching at the resonance of the
// zeros instead would be more accurate for a high Q, but above a Q of about 15 the coefficients
// would not be real.
EdgeSection rising_above_its_poles(const AnalogSection& analog, double omega) {
  const EdgePolynomial poles = impulse_invariant(analog.denominator, omega);
  const double middle = std::min(omega, kPi / 2);
  const Shares share(middle);
  const double low = poles.low * analog.numerator.c0 / analog.denominator.c0;
  const double high = poles.high * std::sqrt(squared_magnitude(analog, kPi / omega));
  const double wanted =
      squared_magnitude(analog, middle / omega) * squared_magnitude(poles, middle);
  const double skew = std::sqrt(wanted - squared(low * share.low - high * share.high));
  return {{low, high, skew / std::sin(middle)}, poles};
}

// A shelf has two resonances, of its zeros and of its poles. The upper one may lie above half the
// sample rate, where impulse invariance would fold it back. So the lower one is mapped, whichever
// it is; this also makes shelves of opposite gains inverse to each other.
EdgeSection shelf(const AnalogSection& analog, double omega) {
  const auto& [zeros, poles] = analog;
  if (poles.c0 * zeros.c2 <= zeros.c0 * poles.c2) return rising_above_its_poles(analog, omega);
  return inverse(rising_above_its_poles(inverse(analog), omega));
}

// Zeros on the unit circle at the notch; the denominator makes 0 Hz, half the sample rate and the
// notch's width exact.
EdgeSection notch(const AnalogSection& analog, double omega) {
  const Shares share(omega);
  const double damping = analog.denominator.c1;
  const double shape = damping * omega * kPi / ((kPi - omega) * (kPi + omega));
  const double loss = std::sqrt(1 + squared(shape));  // 1 / |H| at half the sample rate
  const double excess = squared(shape) / (1 + loss);  // loss - 1
  const double skew = squared(omega * damping / 4) - share.low * share.high * squared(excess) / 4;
  return {{share.high, share.low, 0}, {share.high, share.low * loss, std::sqrt(skew)}};
}

// The phase is exact at 0 Hz and, with its slope, at the band's frequency: -180 degrees there.
EdgeSection all_pass(const AnalogSection& analog, double omega) {
  const Shares share(omega);
  const double skew = omega * analog.denominator.c1 / 4;
  return {{share.high, share.low, -skew}, {share.high, share.low, skew}};
}

// |H(w)| is the analog one at a frequency x(w), x^2 = p sin^2(w/2) / (cos^2(w/2) + q sin^2(w/2)),
// exact at 0 Hz, half the sample rate and the pivot, or a quarter of the rate if that is lower.
EdgeSection tilt(const AnalogSection& analog, double omega) {
  const double middle = std::min(omega, kPi / 2);
  const double top = kPi / omega;
  const double p =
      squared(middle / omega / std::tan(middle / 2)) / ((1 - middle / kPi) * (1 + middle / kPi));
  const double q = p / squared(top);
  const auto map = [&](const Polynomial& c) {
    return first_order(c.c0, std::sqrt(squared(c.c0) * q + squared(c.c1) * p));
  };
  return {map(analog.numerator), map(analog.denominator)};
}

EdgeSection edges(BandType type, const AnalogSection& analog, double omega) {
  switch (type) {
    case BandType::kPeak:
      return peak(analog, omega);
    case BandType::kLowShelf:
    case BandType::kHighShelf:
      return shelf(analog, omega);
    case BandType::kLowPass:
      return low_pass(analog, omega);
    case BandType::kHighPass:
      return high_pass(analog, omega);
    case BandType::kBandPass:
      return resonance(analog, omega);
    case BandType::kNotch:
      return notch(analog, omega);
    case BandType::kAllPass:
      return all_pass(analog, omega);
    case BandType::kTilt:
      break;
  }
  return tilt(analog, omega);
}

}  // namespace

Section matched(BandType type, const AnalogSection& analog, double omega) {
  return section_of(edges(type, analog, omega));
}

}  // namespace channelstrip::host
