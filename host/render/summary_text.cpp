#include <fmt/format.h>

#include <string>

#include "../audio/standard_streams.h"
#include "../duration.h"
#include "decibels.h"
#include "summary.h"

namespace channelstrip::host {
namespace {

std::string sample_types(const RenderReport& report) {
  const std::string input = sample_type_name(report.format);
  const std::string output = sample_type_name(report.output_format);
  return input == output ? output : fmt::format("{} -> {}", input, output);
}

}  // namespace

std::string summary_text(const RenderFile& file, const RenderReport& report) {
  const StripMeters& meters = report.meters;
  std::string text = fmt::format("{} -> {}\n", input_name(file.input), output_name(file.output));
  text += fmt::format("{}, {} Hz, {}, {}{}{}\n\n", report.layout.format->name,
                      report.format.sample_rate, sample_types(report),
                      duration(static_cast<double>(report.frames) / report.format.sample_rate),
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
  for (const std::string& warning : report.warnings) {
    text += fmt::format("\nwarning: {}\n", warning);
  }
  return text;
}

}  // namespace channelstrip::host
