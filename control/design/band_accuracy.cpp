#include "band_accuracy.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <span>
#include <vector>

#include "band.h"
#include "dynamics.h"

namespace channelstrip::host {
namespace {

using Complex = std::complex<double>;

// From 0 to half the sample rate: 24 per octave about the band's own, and more about a resonance.
std::vector<double> compared_frequencies(const BandSettings& band, double sample_rate) {
  std::vector<double> frequencies{0, sample_rate / 2};
  const auto add = [&](double frequency) {
    if (frequency > 0 && frequency < sample_rate / 2) frequencies.push_back(frequency);
  };
  for (int i = -24 * 8; i <= 24 * 16; ++i) add(band.frequency * std::exp2(i / 24.0));
  const double half_width = band.frequency / (2 * std::max(band.q, 0.5));
  for (int i = -60; i <= 60; ++i) add(band.frequency + half_width * i / 20);
  std::ranges::sort(frequencies);
  return frequencies;
}

// The mean over all frequencies, by the trapezoidal rule.
template <typename Function>
double mean(std::span<const double> frequencies, Function value) {
  double sum = 0, previous = value(frequencies.front());
  for (std::size_t i = 1; i < frequencies.size(); ++i) {
    const double next = value(frequencies[i]);
    sum += (frequencies[i] - frequencies[i - 1]) * (previous + next) / 2;
    previous = next;
  }
  return sum / frequencies.back();
}

// The mean square of a rounding's error over that of the rounded value, whose logarithm is taken as
// even: a step of 2^-23 at the power of two below it, over sqrt(12), squared.
constexpr double kRounding = 0x1p-46 / 12 * 3 / (8 * std::numbers::ln2);

// What the section's five roundings put in, over its input's power, at one frequency: y, b1 x + z2,
// z1, b2 x and z2.
double rounding_noise(const Section& s, const Complex& z1) {
  const Complex y = (s.b0 + s.b1 * z1 + s.b2 * z1 * z1) / (1.0 - s.a1 * z1 - s.a2 * z1 * z1);
  const Complex second = z1 * (s.b2 + s.a2 * y);
  const Complex sum = s.b1 + second;
  return kRounding * (std::norm(y) + std::norm(sum) + std::norm(sum + s.a1 * y) + std::norm(s.b2) +
                      std::norm(second));
}

double noise_power(std::span<const Section> sections, std::span<const double> frequencies,
                   double sample_rate) {
  double sum = 0;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const Section& section = sections[i];
    const Section recursion{.a1 = section.a1, .a2 = section.a2};
    const double put_in = mean(frequencies, [&](double f) {
      const Complex z1 = std::polar(1.0, -2 * std::numbers::pi * f / sample_rate);
      return std::norm(response(sections.first(i), f, sample_rate)) * rounding_noise(section, z1);
    });
    sum += put_in * mean(frequencies, [&](double f) {
             return std::norm(response(recursion, f, sample_rate) *
                              response(sections.subspan(i + 1), f, sample_rate));
           });
  }
  return sum;
}

}  // namespace

BandAccuracy band_accuracy(const BandSettings& band, double sample_rate) {
  const Sections exact = design_band(band, sample_rate);
  const Sections stored = design_stored_band(band, sample_rate);
  const std::vector<double> frequencies = compared_frequencies(band, sample_rate);
  double greatest = 0;
  for (const double f : frequencies) {
    greatest = std::max(greatest, std::abs(response(exact, f, sample_rate)));
  }
  BandAccuracy accuracy{};
  for (const double f : frequencies) {
    const auto audible = [&](const Sections& sections) {
      return linear_to_db(std::max(std::abs(response(sections, f, sample_rate)), greatest / 1000));
    };
    const double deviation = std::abs(audible(stored) - audible(exact));
    if (deviation > accuracy.deviation) {
      accuracy.deviation = deviation;
      accuracy.frequency = f;
    }
  }
  accuracy.noise =
      kNoiseInput + linear_to_db(std::sqrt(noise_power(stored, frequencies, sample_rate)));
  return accuracy;
}

}  // namespace channelstrip::host
