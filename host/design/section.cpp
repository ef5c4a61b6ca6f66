#include "section.h"

#include <fmt/format.h>

#include <cmath>
#include <numbers>

#include "require.h"

namespace channelstrip::host {
namespace {

// The cookbook's symbols: `a` is the square root of the band's linear gain, `alpha` sin w / (2 Q),
// `beta` 2 sqrt(a) alpha, with w the band's frequency in radians per sample.

// The cookbook's difference equation subtracts its feedback.
Section normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
  return {b0 / a0, b1 / a0, b2 / a0, -a1 / a0, -a2 / a0};
}

Section peak(double a, double cosine, double alpha) {
  return normalised(1 + alpha * a, -2 * cosine, 1 - alpha * a, 1 + alpha / a, -2 * cosine,
                    1 - alpha / a);
}

Section low_shelf(double a, double cosine, double beta) {
  const double plus = a + 1;
  const double minus = a - 1;
  return normalised(a * (plus - minus * cosine + beta), 2 * a * (minus - plus * cosine),
                    a * (plus - minus * cosine - beta), plus + minus * cosine + beta,
                    -2 * (minus + plus * cosine), plus + minus * cosine - beta);
}

Section high_shelf(double a, double cosine, double beta) {
  const double plus = a + 1;
  const double minus = a - 1;
  return normalised(a * (plus + minus * cosine + beta), -2 * a * (minus + plus * cosine),
                    a * (plus + minus * cosine - beta), plus - minus * cosine + beta,
                    2 * (minus - plus * cosine), plus - minus * cosine - beta);
}

Section low_pass(double omega, double cosine, double alpha) {
  const double sine = std::sin(omega / 2);
  const double b = sine * sine;  // (1 - cos w) / 2 without its cancellation
  return normalised(b, 2 * b, b, 1 + alpha, -2 * cosine, 1 - alpha);
}

Section high_pass(double cosine, double alpha) {
  const double b = (1 + cosine) / 2;
  return normalised(b, -2 * b, b, 1 + alpha, -2 * cosine, 1 - alpha);
}

double to_nearest_float(double value) {
  return static_cast<double>(static_cast<float>(value));
}

}  // namespace

Section design_band(const BandSettings& band, double sample_rate) {
  require(std::isfinite(sample_rate), "sample rate", sample_rate, "Hz", "finite");
  require(band.frequency > 0, "frequency", band.frequency, "Hz", "above 0 Hz");
  require(band.frequency < sample_rate / 2, "frequency", band.frequency, "Hz",
          fmt::format("below half the sample rate {} Hz", sample_rate));
  require(band.q > 0 && std::isfinite(band.q), "q", band.q, "", "above 0 and finite");
  require_decibels("gain", band.gain);

  const double omega = 2 * std::numbers::pi * band.frequency / sample_rate;
  const double cosine = std::cos(omega);
  const double alpha = std::sin(omega) / (2 * band.q);
  const double a = std::pow(10, band.gain / 40);
  const double beta = 2 * std::sqrt(a) * alpha;
  switch (band.type) {
    case BandType::kPeak:
      return peak(a, cosine, alpha);
    case BandType::kLowShelf:
      return low_shelf(a, cosine, beta);
    case BandType::kHighShelf:
      return high_shelf(a, cosine, beta);
    case BandType::kLowPass:
      return low_pass(omega, cosine, alpha);
    case BandType::kHighPass:
      return high_pass(cosine, alpha);
  }
  throw std::invalid_argument("unknown band type");
}

Section in_single_precision(const Section& section) {
  const double denominator = 1 - section.a1 - section.a2;
  const double gain = (section.b0 + section.b1 + section.b2) / denominator;  // at 0 Hz

  Section rounded;
  rounded.a1 = to_nearest_float(section.a1);
  rounded.a2 = to_nearest_float(1 - rounded.a1 - denominator);
  rounded.b0 = to_nearest_float(section.b0);
  rounded.b1 = to_nearest_float(section.b1);
  rounded.b2 = to_nearest_float(gain * (1 - rounded.a1 - rounded.a2) - rounded.b0 - rounded.b1);
  return rounded;
}

bool is_stable(const Section& section) {
  // The stability triangle: the denominator is positive at z = 1 and at z = -1, and the poles'
  // product -a2 lies inside (-1, 1).
  return std::abs(section.a2) < 1 && std::abs(section.a1) < 1 - section.a2;
}

Section design_stored_band(const BandSettings& band, double sample_rate) {
  const Section section = in_single_precision(design_band(band, sample_rate));
  if (!is_stable(section)) {
    throw std::invalid_argument(
        fmt::format("frequency {} Hz, q {} and gain {} dB leave no stable filter in single "
                    "precision at {} Hz",
                    band.frequency, band.q, band.gain, sample_rate));
  }
  return section;
}

std::complex<double> response(const Section& section, double frequency, double sample_rate) {
  const auto z1 = std::polar(1.0, -2 * std::numbers::pi * frequency / sample_rate);
  const auto z2 = z1 * z1;
  return (section.b0 + section.b1 * z1 + section.b2 * z2) /
         (1.0 - section.a1 * z1 - section.a2 * z2);
}

}  // namespace channelstrip::host
