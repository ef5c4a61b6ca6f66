#include "report_charts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "../text/wording.h"
#include "control/design/dynamics.h"
#include "control/strip/strip_stream.h"

namespace channelstrip::host {
namespace {

constexpr const char* kBefore = "guide";
constexpr const char* kAfter = "s1";
constexpr double kSpectrumHeight = 84;  // dB

double sample_rate(const RenderAnalysis& analysis) {
  return analysis.before.format.sample_rate;
}

Axis time_axis(const RenderAnalysis& analysis) {
  const double seconds = static_cast<double>(analysis.frames) / sample_rate(analysis);
  const char* const unit = seconds < 60 ? "s" : seconds < 3600 ? "min:s" : "h:min:s";
  return {.label = fmt::format("Time ({})", unit),
          .high = seconds > 0 ? seconds : 1,
          .scale = Scale::kTime};
}

// The least power of two that no sample exceeds; 1 for near silence.
double amplitude_axis_end(const RenderAnalysis& analysis) {
  float peak = 0;
  for (const auto* file : {&analysis.before, &analysis.after}) {
    for (const auto& channel : file->signal.channels()) peak = std::max(peak, channel.peak);
  }
  if (peak <= 0x1p-12f) return 1;
  return std::exp2(std::ceil(std::log2(static_cast<double>(peak))));
}

Series waveform(std::string label, std::string style, const Envelope& envelope, double rate) {
  Series series{.label = std::move(label), .style = std::move(style), .points = {}};
  const double seconds = static_cast<double>(envelope.frames_per_column()) / rate;
  double time = seconds / 2;
  for (const Extremes& column : envelope.columns()) {
    series.points.push_back({time, static_cast<double>(column.high)});
    series.lower.push_back(static_cast<double>(column.low));
    time += seconds;
  }
  return series;
}

Series spectrum(std::string label, std::string style, const std::vector<BandLevel>& levels) {
  Series series{.label = std::move(label), .style = std::move(style), .points = {}};
  for (const auto& [frequency, level] : levels) series.points.push_back({frequency, level});
  return series;
}

// A multiple of 12 dB that no level of any part lies above.
double spectrum_axis_end(const RenderAnalysis& analysis) {
  double highest = -150;
  for (const Part& part : analysis.parts) {
    for (const auto* file : {&analysis.before, &analysis.after}) {
      for (const BandLevel& band : file->signal.levels(part)) {
        highest = std::max(highest, band.level);
      }
    }
  }
  return 12 * std::ceil(std::max(highest, -100.0) / 12);
}

}  // namespace

Chart waveform_chart(const RenderAnalysis& analysis, std::size_t part) {
  const double end = amplitude_axis_end(analysis), rate = sample_rate(analysis);
  const std::string& name = analysis.parts[part].name;
  return {.title = "Waveform, " + name,
          .description = fmt::format("Highest and lowest samples of {} over {}, before and after",
                                     name, duration(time_axis(analysis).high)),
          .x = time_axis(analysis),
          .y = {.label = "Amplitude (1 is full scale)", .low = -end, .high = end},
          .series = {waveform("before", kBefore, analysis.before.signal.envelopes()[part], rate),
                     waveform("after", kAfter, analysis.after.signal.envelopes()[part], rate)}};
}

Chart spectrum_chart(const RenderAnalysis& analysis, std::size_t part) {
  const double end = spectrum_axis_end(analysis);
  const Part& shown = analysis.parts[part];
  const std::vector<BandLevel> before = analysis.before.signal.levels(shown);
  const double highest = before.empty() ? 20000 : std::min(20000.0, before.back().frequency);
  return {.title = "Spectrum, " + shown.name,
          .description = fmt::format("Average level of {} in each sixth of an octave from 20 Hz "
                                     "up, before and after",
                                     shown.name),
          .x = {.label = "Frequency (Hz)",
                .low = 20,
                .high = std::max(40.0, highest),
                .scale = Scale::kLogarithmic},
          .y = {.label = "Level (dBFS)",
                .low = end - kSpectrumHeight,
                .high = end,
                .scale = Scale::kDecibels},
          .series = {spectrum("before", kBefore, before),
                     spectrum("after", kAfter, analysis.after.signal.levels(shown))}};
}

Chart reduction_chart(const RenderAnalysis& analysis) {
  double deepest = 0;
  std::vector<Series> series;
  for (const auto& [part, reduction] : analysis.groups) {
    Series gain{.label = part.name, .style = fmt::format("s{}", series.size() + 1), .points = {}};
    const double seconds =
        static_cast<double>(reduction.periods_per_column() * StripStream::kPeriod) /
        sample_rate(analysis);
    double time = seconds / 2;
    for (const auto& column : reduction.columns()) {
      // Gains are exact to some 4e-5 dB, so that those near 0 dB may come out above it.
      const double decibels = linear_to_db(static_cast<double>(column.least));
      gain.points.push_back({time, std::min(0.0, decibels)});
      time += seconds;
    }
    deepest = std::max(deepest, reduction.deepest());
    series.push_back(std::move(gain));
  }
  const double low = -6 * std::ceil(std::clamp(deepest, 6.0, 96.0) / 6);
  Chart chart{.title = "Gain reduction",
              .description = fmt::format("Gain of each link group over time; deepest reduction "
                                         "{} dB",
                                         number(deepest)),
              .x = time_axis(analysis),
              .y = {.label = "Gain (dB)", .low = low, .high = 0, .scale = Scale::kDecibels},
              .series = std::move(series)};
  for (const Preset::Change& change : analysis.preset.changes) {
    chart.marks.push_back({Mark::Axis::kX, change.time, "settings change"});
  }
  return chart;
}

}  // namespace channelstrip::host
