// Formats by their index, parameters by their id.

#ifndef CHANNELSTRIP_PARAMETERS_HPP
#define CHANNELSTRIP_PARAMETERS_HPP

#include <channelstrip/channelstrip.h>
#include <channelstrip/error.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace channelstrip {

// [any]
inline std::string_view version() noexcept {
  return channelstrip_version();
}

// Formats, by index. [any]
inline channelstrip_format format_info(std::uint32_t format) {
  channelstrip_format info{};
  detail::check(channelstrip_format_info(format, &info, sizeof info));
  return info;
}
inline std::uint32_t find_format(const std::string& name) {
  std::uint32_t format = 0;
  detail::check(channelstrip_format_find(name.c_str(), &format));
  return format;
}
// Empty for what there isn't.
inline std::string_view role_of(std::uint32_t format, channelstrip_order order,
                                std::uint32_t channel) noexcept {
  const char* role = channelstrip_format_role(format, order, channel);
  return role ? std::string_view(role) : std::string_view();
}

// Parameters: one by its index, all others by id. [any]
inline channelstrip_parameter parameter_info(std::uint32_t index) {
  channelstrip_parameter info{};
  detail::check(channelstrip_parameter_info(index, &info, sizeof info));
  return info;
}
inline std::uint32_t find_parameter(const std::string& symbol) {
  std::uint32_t id = 0;
  detail::check(channelstrip_parameter_find(symbol.c_str(), &id));
  return id;
}
inline std::string value_to_text(std::uint32_t id, double value) {
  return detail::text_of([=](char* text, std::size_t size, std::size_t* length) {
    return channelstrip_value_to_text(id, value, text, size, length);
  });
}
inline double text_to_value(std::uint32_t id, const std::string& text) {
  double value = 0;
  detail::check(channelstrip_text_to_value(id, text.c_str(), &value));
  return value;
}
inline double value_to_position(std::uint32_t id, double value) {
  double position = 0;
  detail::check(channelstrip_value_to_position(id, value, &position));
  return position;
}
inline double position_to_value(std::uint32_t id, double position) {
  double value = 0;
  detail::check(channelstrip_position_to_value(id, position, &value));
  return value;
}

}  // namespace channelstrip

#endif
