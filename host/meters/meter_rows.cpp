#include "meter_rows.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <span>
#include <string_view>

#include "control/design/dynamics.h"

namespace channelstrip::host {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kEndOfRow = "\r\n";  // RFC 4180

// Adding 0 turns -0 into 0.
double rounded(double value, double steps) {
  return std::round(value * steps) / steps + 0.0;
}

double rounded_decibels(float linear) {
  return rounded(linear_to_db(static_cast<double>(linear)), 1e3);
}

double reduction_decibels(float reduction) {
  return rounded(-linear_to_db(1 - static_cast<double>(reduction)), 1e3);
}

std::string csv_header(const std::vector<std::string>& labels) {
  std::vector<std::string> names{"time"};
  const auto per_channel = [&](std::string_view name) {
    for (const std::string& label : labels) names.push_back(fmt::format("{}_{}", name, label));
  };
  per_channel("input_peak");
  per_channel("output_peak");
  names.insert(names.end(), {"level", "gain", "compressor_reduction", "expander_reduction"});
  per_channel("channel_gain");
  return fmt::format("{}{}", fmt::join(names, ","), kEndOfRow);
}

std::string csv_row(double time, const MeterInterval& interval) {
  std::string line = fmt::format("{:.6f}", time);
  const auto append = [&](double value) { line += fmt::format(",{:.3f}", value); };
  const auto append_all = [&](std::span<const float> values) {
    for (const float value : values) append(rounded_decibels(value));
  };
  append_all(interval.input_peak);
  append_all(interval.output_peak);
  append(rounded_decibels(interval.level));
  append(rounded_decibels(interval.gain));
  append(reduction_decibels(interval.compressor_reduction));
  append(reduction_decibels(interval.expander_reduction));
  append_all(interval.channel_gain);
  line += kEndOfRow;
  return line;
}

// An infinite number becomes null: nlohmann::json writes it so.
std::string json_row(const std::vector<std::string>& labels, double time,
                     const MeterInterval& interval) {
  const auto per_channel = [&](std::span<const float> values) {
    Json object = Json::object();
    for (std::size_t c = 0; c < labels.size(); ++c) object[labels[c]] = rounded_decibels(values[c]);
    return object;
  };
  const Json object{{"time", rounded(time, 1e6)},
                    {"input_peak", per_channel(interval.input_peak)},
                    {"output_peak", per_channel(interval.output_peak)},
                    {"level", rounded_decibels(interval.level)},
                    {"gain", rounded_decibels(interval.gain)},
                    {"compressor_reduction", reduction_decibels(interval.compressor_reduction)},
                    {"expander_reduction", reduction_decibels(interval.expander_reduction)},
                    {"channel_gain", per_channel(interval.channel_gain)}};
  return object.dump() + '\n';
}

}  // namespace

std::string header(RowFormat format, const std::vector<std::string>& labels) {
  return format == RowFormat::kCsv ? csv_header(labels) : std::string();
}

std::string row(RowFormat format, const std::vector<std::string>& labels, double time,
                const MeterInterval& interval) {
  return format == RowFormat::kCsv ? csv_row(time, interval) : json_row(labels, time, interval);
}

}  // namespace channelstrip::host
