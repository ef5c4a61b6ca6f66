#include "summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "../system/standard_streams.h"
#include "../text/wording.h"
#include "control/design/dynamics.h"

namespace channelstrip::host {
namespace {

double decibels(float linear) {
  return linear_to_db(static_cast<double>(linear));
}

// A gain of 1 reduces by 0, not -0, dB.
double reduction(float gain) {
  return std::max(0.0, -decibels(gain));
}

std::string sample_types(const RenderReport& report) {
  const std::string input = sample_type_name(report.format);
  const std::string output = sample_type_name(report.output_format);
  return input == output ? output : fmt::format("{} -> {}", input, output);
}

nlohmann::json finite_or_null(double value) {
  return std::isfinite(value) ? nlohmann::json(value) : nlohmann::json(nullptr);
}

// What was reached, as a sentence.
std::string loudness_line(const Normalisation& reached) {
  if (reached.true_peak == std::numeric_limits<double>::infinity()) {
    return "no finite peak: the level stays as it is";
  }
  if (!reached.loudness) {
    return "no loudness, all silence or shorter than 0.4 s: the level stays as it is";
  }
  const std::string loudness = fmt::format("loudness {:.1f} LUFS", *reached.loudness);
  if (reached.held) {
    return fmt::format("{} instead of {}: true peak held at {:.1f} dBTP, gain {:+.2f} dB", loudness,
                       reached.target.loudness, reached.true_peak, reached.gain);
  }
  return fmt::format("{}, true peak {:.1f} dBTP, gain {:+.2f} dB", loudness, reached.true_peak,
                     reached.gain);
}

nlohmann::json loudness_json(const Normalisation& reached) {
  return {{"target", reached.target.loudness},
          {"integrated", reached.loudness ? nlohmann::json(*reached.loudness) : nullptr},
          {"true_peak", finite_or_null(reached.true_peak)},
          {"gain", reached.gain}};
}

}  // namespace

std::string summary_text(const RenderFile& file, const RenderReport& report) {
  const StripMeters& meters = report.meters;
  std::string text = fmt::format("{} -> {}\n", one_line(input_name(file.input)),
                                 one_line(output_name(file.output)));
  text += fmt::format("{}, {} Hz, {}, {}{}{}\n\n", report.layout.format->name,
                      report.format.sample_rate, sample_types(report),
                      duration(static_cast<double>(report.frames) / report.format.sample_rate),
                      report.preset_name.empty() ? "" : ", ", one_line(report.preset_name));

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
  if (report.normalisation) text += loudness_line(*report.normalisation) + '\n';
  for (const std::string& warning : report.warnings) {
    text += fmt::format("\nwarning: {}\n", one_line(warning));
  }
  return text;
}

std::string summary_line(const RenderFile& file, const RenderReport& report) {
  const StripMeters& meters = report.meters;
  const std::size_t channels = report.layout.labels.size();
  const auto loudest = [channels](const auto& peaks) {
    return decibels(std::ranges::max(std::span(peaks).first(channels)));
  };
  std::string text = fmt::format(
      "{} -> {}: peak {:.1f} -> {:.1f} dBFS, reduction {:.1f} dB\n", one_line(file.input),
      one_line(file.output), loudest(meters.input_peak), loudest(meters.output_peak),
      reduction(1 - std::max(meters.compressor_reduction, meters.expander_reduction)));
  if (report.normalisation) text += fmt::format("  {}\n", loudness_line(*report.normalisation));
  for (const std::string& warning : report.warnings) {
    text += fmt::format("  warning: {}\n", one_line(warning));
  }
  return text;
}

std::string tally_line(const Tally& tally) {
  std::string text = fmt::format("{} of {} files rendered, {} of audio", tally.rendered,
                                 tally.rendered + tally.failed, duration(tally.seconds));
  if (tally.failed > 0) text += fmt::format("; {} failed", tally.failed);
  if (tally.with_warnings > 0) text += fmt::format("; {} with warnings", tally.with_warnings);
  return text + '\n';
}

nlohmann::json summary_json(const RenderFile& file, const RenderReport& report) {
  const StripMeters& meters = report.meters;
  auto channels = nlohmann::json::array();
  for (std::size_t c = 0; c < report.layout.labels.size(); ++c) {
    channels.push_back({{"channel", report.layout.labels[c]},
                        {"input_peak", finite_or_null(decibels(meters.input_peak[c]))},
                        {"output_peak", finite_or_null(decibels(meters.output_peak[c]))},
                        {"reduction", finite_or_null(reduction(meters.least_gain[c]))}});
  }
  const auto seconds = static_cast<double>(report.frames) / report.format.sample_rate;
  nlohmann::json json{
      {"input", file.input},
      {"output", file.output},
      {"preset", report.preset_name},
      {"format", report.layout.format->name},
      {"sample_rate", report.format.sample_rate},
      {"sample_type", sample_type_name(report.output_format)},
      {"frames", report.frames},
      {"seconds", seconds},
      {"channels", channels},
      {"compressor_reduction", finite_or_null(reduction(1 - meters.compressor_reduction))},
      {"expander_reduction", finite_or_null(reduction(1 - meters.expander_reduction))},
      {"clipped", report.clipped},
      {"warnings", report.warnings},
      {"cut_short", report.cut_short}};
  if (report.normalisation) json["loudness"] = loudness_json(*report.normalisation);
  return json;
}

}  // namespace channelstrip::host
