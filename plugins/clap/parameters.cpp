#include "parameters.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <vector>

#include "../held_meters.h"
#include "extensions.h"

namespace channelstrip::clap {
namespace {

// Sorted.
std::vector<clap_id> found_ids() {
  std::vector<clap_id> ids;
  for (std::uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter parameter{};
    channelstrip_parameter_info(i, &parameter, sizeof parameter);
    ids.push_back(parameter.id);
  }
  std::ranges::sort(ids);
  return ids;
}

void describe(const channelstrip_parameter& parameter, clap_param_info_t& info) {
  info.id = parameter.id;
  info.flags = CLAP_PARAM_IS_AUTOMATABLE;
  if (parameter.kind != CHANNELSTRIP_NUMBER) info.flags |= CLAP_PARAM_IS_STEPPED;
  if (std::string_view(parameter.symbol) == "bypass") info.flags |= CLAP_PARAM_IS_BYPASS;
  write(parameter.name, info.name);
  write(parameter.group, info.module);
  info.min_value = parameter.minimum;
  info.max_value = parameter.maximum;
  info.default_value = parameter.initial;
}

void describe(Meter meter, clap_param_info_t& info) {
  info.id = id_of(meter);
  info.flags = CLAP_PARAM_IS_READONLY;
  write(kMeterNames[meter], info.name);
  write("Meters", info.module);
  info.min_value = info.default_value = least_of(meter);
  info.max_value =
      meter < kCompressorReduction ? plugins::kGreatestPeak : plugins::kGreatestReduction;
}

}  // namespace

clap_id id_of(Meter meter) {
  return kFirstMeterId + static_cast<clap_id>(meter);
}

std::optional<Meter> meter_of(clap_id id) {
  if (id < kFirstMeterId || id >= kFirstMeterId + kMeterCount) return std::nullopt;
  return static_cast<Meter>(id - kFirstMeterId);
}

double least_of(Meter meter) {
  return meter < kCompressorReduction ? plugins::kLeastPeak : 0;
}

bool is_parameter(clap_id id) {
  static const std::vector<clap_id> ids = found_ids();
  return std::ranges::binary_search(ids, id);
}

std::uint32_t parameter_count() {
  return channelstrip_parameter_count() + kMeterCount;
}

bool describe_parameter(std::uint32_t index, clap_param_info_t& info) {
  info = {};
  if (index >= parameter_count()) return false;
  channelstrip_parameter parameter{};
  if (channelstrip_parameter_info(index, &parameter, sizeof parameter) == CHANNELSTRIP_OK) {
    describe(parameter, info);
  } else {
    describe(static_cast<Meter>(index - channelstrip_parameter_count()), info);
  }
  return true;
}

std::string text_of(clap_id id, double value) {
  if (meter_of(id)) return fmt::format("{:.1f} dB", value);
  std::string text(64, '\0');
  std::size_t length = 0;
  if (channelstrip_value_to_text(id, value, text.data(), text.size(), &length) != CHANNELSTRIP_OK) {
    return "";
  }
  text.resize(length);
  return text;
}

std::optional<double> value_of(clap_id id, const char* text) {
  double value = 0;
  if (meter_of(id)) {
    const auto read = std::from_chars(text, text + std::strlen(text), value);
    return read.ec == std::errc() ? std::optional(value) : std::nullopt;
  }
  if (channelstrip_text_to_value(id, text, &value) != CHANNELSTRIP_OK) return std::nullopt;
  return value;
}

}  // namespace channelstrip::clap
