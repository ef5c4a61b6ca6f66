// Magnitude and phase of the equaliser, magnitude of the key filter.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "strip_curves.h"

namespace channelstrip::host {
namespace {

constexpr double kDeepest = -36;     // dB; what is below is off the chart
constexpr double kInaudible = -300;  // dB; stands for a zero's -infinity

using Response = std::vector<double> (*)(std::span<const BandFilter>, std::span<const double>,
                                         double);

std::vector<BandFilter> all_bands(const StripCurves& curves) {
  std::vector<BandFilter> bands = curves.pre;
  bands.insert(bands.end(), curves.post.begin(), curves.post.end());
  return bands;
}

// From 20 Hz, or an octave below the lowest band, to just below half the sample rate.
Axis frequency_axis(std::span<const BandFilter> bands, double sample_rate) {
  double low = 20;
  for (const BandFilter& band : bands) low = std::min(low, band.settings.frequency / 2);
  return {"frequency, Hz", low, 0.49 * sample_rate, Scale::kLogarithmic};
}

std::vector<Point> points(std::span<const double> x, std::span<const double> y) {
  std::vector<Point> result(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) result[i] = {x[i], std::max(y[i], kInaudible)};
  return result;
}

// The sums, thick, and on them a thin line per band.
class Lines {
 public:
  Lines(const StripCurves& curves, Response response)
      : curves_(curves),
        response_(response),
        frequencies_(plotted_frequencies(all_bands(curves), x().low, x().high)) {
    const bool both = !curves.pre.empty() && !curves.post.empty();
    const bool post_only = curves.pre.empty() && !curves.post.empty();
    add(both ? "before dynamics" : "all bands", "main", post_only ? curves.post : curves.pre);
    if (both) add("after dynamics", "main dashed", curves.post);
    std::size_t number = 0;
    for (const BandFilter& band : all_bands(curves)) {
      add(describe(band.settings), fmt::format("s{}", number % 8 + 1), std::span(&band, 1));
      ++number;
    }
  }

  Axis x() const { return frequency_axis(all_bands(curves_), curves_.sample_rate); }

  std::vector<Series> series;
  double least = 0, greatest = 0;

 private:
  void add(std::string label, std::string style, std::span<const BandFilter> bands) {
    const std::vector<double> values = response_(bands, frequencies_, curves_.sample_rate);
    least = std::min(least, std::ranges::min(values));
    greatest = std::max(greatest, std::ranges::max(values));
    series.push_back({std::move(label), std::move(style), points(frequencies_, values)});
  }

  const StripCurves& curves_;
  Response response_;
  std::vector<double> frequencies_;
};

// Whole steps around what is drawn, some room above it.
Axis gain_axis(double least, double greatest) {
  return {"gain, dB", std::min(-6.0, 6 * std::floor(std::max(least, kDeepest) / 6)),
          std::max(6.0, 3 * std::ceil((greatest + 0.5) / 3)), Scale::kDecibels};
}

Axis phase_axis(double least, double greatest) {
  return {"phase, degrees", std::min(-90.0, 45 * std::floor(least / 45)),
          std::max(90.0, 45 * std::ceil(greatest / 45)), Scale::kDegrees};
}

std::string names(std::span<const BandFilter> bands) {
  std::string list;
  for (const BandFilter& band : bands) {
    list += (list.empty() ? "" : ", ") + describe(band.settings);
  }
  return list.empty() ? "no bands" : list;
}

Chart key_chart(const StripCurves& curves) {
  const std::span<const BandFilter> key(&*curves.key_filter, 1);
  const Axis x = frequency_axis(key, curves.sample_rate);
  const std::vector<double> frequencies = plotted_frequencies(key, x.low, x.high);
  const std::vector<double> values = magnitude_db(key, frequencies, curves.sample_rate);
  return {.title = "Key filter: what the dynamics hear",
          .description =
              "Magnitude over frequency of the filter on the detection signal, a " + names(key),
          .x = x,
          .y = gain_axis(std::ranges::min(values), std::ranges::max(values)),
          .series = {{names(key), "main", points(frequencies, values)}}};
}

}  // namespace

std::vector<Chart> filter_charts(const StripCurves& curves) {
  const Lines magnitude(curves, magnitude_db);
  Lines phase(curves, phase_degrees);
  for (Series& series : phase.series) series.label.clear();
  const std::string bands = names(all_bands(curves));
  std::vector<Chart> charts{{.title = "Equaliser",
                             .description = "Magnitude over frequency: " + bands,
                             .x = magnitude.x(),
                             .y = gain_axis(magnitude.least, magnitude.greatest),
                             .series = magnitude.series}};
  if (!all_bands(curves).empty()) {
    charts.push_back({.title = "Phase (lines as above)",
                      .description = "Phase over frequency: " + bands,
                      .x = phase.x(),
                      .y = phase_axis(phase.least, phase.greatest),
                      .series = phase.series});
  }
  if (curves.key_filter) charts.push_back(key_chart(curves));
  return charts;
}

}  // namespace channelstrip::host
