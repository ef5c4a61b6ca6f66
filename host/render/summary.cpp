#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "../design/dynamics.h"
#include "render.h"

namespace channelstrip::host {
namespace {

std::string duration(sf_count_t frames, int sample_rate) {
  const double seconds = static_cast<double>(frames) / sample_rate;
  const double minutes = std::floor(seconds / 60);
  return minutes < 1 ? fmt::format("{:.3f} s", seconds)
                     : fmt::format("{:.0f} min {:06.3f} s", minutes, seconds - 60 * minutes);
}

double decibels(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

// A gain of 1 reduces by 0, not -0, dB.
double reduction(float gain) {
  return std::max(0.0, -decibels(gain));
}

}  // namespace

std::string summary(const RenderOptions& options, const RenderReport& report) {
  const StripMeters& meters = report.meters;
  std::string text = fmt::format("{} -> {}\n", options.input, options.output);
  text += fmt::format("{}, {} Hz, {}, {}{}{}\n\n", report.layout.format->name,
                      report.format.sample_rate, sample_type_name(report.format),
                      duration(report.frames, report.format.sample_rate),
                      report.preset_name.empty() ? "" : ", ", report.preset_name);

  constexpr const char* kHeading = "{:<9}{:>12}{:>14}{:>12}\n";
  text += fmt::format(kHeading, "channel", "input peak", "output peak", "reduction");
  text += fmt::format(kHeading, "", "dBFS", "dBFS", "dB");
  for (std::size_t c = 0; c < report.layout.labels.size(); ++c) {
    text += fmt::format("{:<9}{:>12.1f}{:>14.1f}{:>12.1f}\n", report.layout.labels[c],
                        decibels(meters.input_peak[c]), decibels(meters.output_peak[c]),
                        reduction(meters.least_gain[c]));
  }
  text += fmt::format("\ngreatest reduction: compressor {:.1f} dB, expander {:.1f} dB\n",
                      reduction(1 - meters.compressor_reduction),
                      reduction(1 - meters.expander_reduction));

  if (report.clipped > 0) {
    text += fmt::format("\nwarning: {} sample{} above full scale clipped\n", report.clipped,
                        report.clipped == 1 ? "" : "s");
  }
  if (!report.keeps_channel_map) {
    text +=
        fmt::format("\nwarning: {} doesn't say which speaker each channel feeds\n", options.output);
  }
  return text;
}

}  // namespace channelstrip::host
