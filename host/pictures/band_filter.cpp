#include "band_filter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "control/design/dynamics.h"
#include "ticks.h"

namespace channelstrip::host {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;
constexpr int kFrequencies = 360;  // per plot

// The angle that is nearest to `previous` and differs from `angle` by whole turns only.
double unwrapped(double angle, double previous) {
  return angle - 360 * std::round((angle - previous) / 360);
}

}  // namespace

BandFilter design_filter(const BandSettings& band, double sample_rate) {
  return {band, design_stored_band(band, sample_rate)};
}

double pole_radius(const BandFilter& band) {
  double radius = 0;
  for (const Section& section : band.sections) {
    for (const std::complex<double>& pole : poles(section)) {
      radius = std::max(radius, std::abs(pole));
    }
  }
  return radius;
}

std::vector<double> magnitude_db(std::span<const BandFilter> bands,
                                 std::span<const double> frequencies, double sample_rate) {
  std::vector<double> result(frequencies.size());
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    for (const BandFilter& band : bands) {
      result[i] += linear_to_db(std::abs(response(band.sections, frequencies[i], sample_rate)));
    }
  }
  return result;
}

std::vector<double> phase_degrees(std::span<const BandFilter> bands,
                                  std::span<const double> frequencies, double sample_rate) {
  std::vector<double> result(frequencies.size());
  for (const BandFilter& band : bands) {
    for (const Section& section : band.sections) {
      double previous = 0;
      for (std::size_t i = 0; i < frequencies.size(); ++i) {
        const double angle = kDegrees * std::arg(response(section, frequencies[i], sample_rate));
        previous = i == 0 ? angle : unwrapped(angle, previous);
        result[i] += previous;
      }
    }
  }
  return result;
}

std::vector<double> plotted_frequencies(std::span<const BandFilter> bands, double low,
                                        double high) {
  std::vector<double> result;
  for (int i = 0; i <= kFrequencies; ++i) {
    result.push_back(low * std::pow(high / low, i / static_cast<double>(kFrequencies)));
  }
  result.back() = high;
  for (const BandFilter& band : bands) {
    // A resonance is frequency / Q wide; for those wider than at a Q of 1 the even steps suffice.
    const double width = band.settings.frequency / std::max(band.settings.q, 1.0);
    for (const double part : {0.0, 0.02, 0.05, 0.1, 0.2, 0.3, 0.5, 0.7, 1.0, 1.5, 2.0}) {
      for (const double side : {-1.0, 1.0}) {
        const double frequency = band.settings.frequency + side * part * width;
        if (low < frequency && frequency < high) result.push_back(frequency);
      }
    }
  }
  std::ranges::sort(result);
  result.erase(std::unique(result.begin(), result.end()), result.end());
  return result;
}

std::string_view type_name(BandType type) {
  switch (type) {
    case BandType::kPeak:
      return "peak";
    case BandType::kLowShelf:
      return "low shelf";
    case BandType::kHighShelf:
      return "high shelf";
    case BandType::kLowPass:
      return "low pass";
    case BandType::kHighPass:
      return "high pass";
    case BandType::kBandPass:
      return "band pass";
    case BandType::kNotch:
      return "notch";
    case BandType::kAllPass:
      return "all pass";
    case BandType::kTilt:
      return "tilt";
  }
  return "";
}

std::string describe(const BandSettings& band) {
  const bool kilo = band.frequency >= 1000;
  std::string text = fmt::format("{} {} {}", type_name(band.type),
                                 engineers_number(kilo ? band.frequency / 1000 : band.frequency),
                                 kilo ? "kHz" : "Hz");
  if (uses_gain(band)) text += fmt::format(" {:+.1f} dB", band.gain);
  if (uses_slope(band) && band.slope != 12) text += fmt::format(" {} dB/oct", band.slope);
  return text;
}

}  // namespace channelstrip::host
