#include <cmath>
#include <nlohmann/json.hpp>

#include "decibels.h"
#include "summary.h"

namespace channelstrip::host {
namespace {

nlohmann::json finite_or_null(double value) {
  return std::isfinite(value) ? nlohmann::json(value) : nlohmann::json(nullptr);
}

}  // namespace

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
  return {{"input", file.input},
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
          {"warnings", report.warnings}};
}

}  // namespace channelstrip::host
