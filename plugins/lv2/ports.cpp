#include "ports.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace channelstrip::lv2 {
namespace {

using Parameters = std::array<channelstrip_parameter, kPortParameterCount>;

Parameters found_parameters() {
  Parameters found{};
  std::size_t count = 0;
  for (std::uint32_t i = 0; i < channelstrip_parameter_count(); ++i) {
    channelstrip_parameter parameter;
    channelstrip_parameter_info(i, &parameter, sizeof parameter);
    if (std::string_view(parameter.symbol) == "bypass") continue;
    if (count < found.size()) found[count++] = parameter;
  }
  return found;
}

}  // namespace

std::span<const channelstrip_parameter> port_parameters() {
  static const Parameters parameters = found_parameters();
  return parameters;
}

std::string uri_of(std::uint32_t format) {
  channelstrip_format info;
  if (channelstrip_format_info(format, &info, sizeof info) != CHANNELSTRIP_OK) return "";
  std::string uri = info.name;
  std::ranges::transform(uri, uri.begin(), [](unsigned char c) { return std::tolower(c); });
  return "urn:channelstrip:lv2:" + uri;
}

}  // namespace channelstrip::lv2
