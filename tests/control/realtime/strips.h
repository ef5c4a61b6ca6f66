// Settings and strips of the C interface that end by themselves.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace channelstrip::test {

struct Free {
  void operator()(channelstrip_settings* settings) const { channelstrip_settings_free(settings); }
  void operator()(channelstrip_strip* strip) const { channelstrip_strip_free(strip); }
};
using Settings = std::unique_ptr<channelstrip_settings, Free>;
using LiveStripPointer = std::unique_ptr<channelstrip_strip, Free>;

inline void succeed(channelstrip_status status) {
  if (status != CHANNELSTRIP_OK) throw std::runtime_error(channelstrip_status_text(status));
}

// Throws if the text isn't all understood.
inline Settings settings_from(std::string_view toml) {
  Settings settings(channelstrip_settings_new());
  std::string problem;
  const auto note = +[](void* user, std::uint32_t, std::uint32_t, const char* what) {
    *static_cast<std::string*>(user) = what;
  };
  succeed(channelstrip_settings_read(settings.get(), toml.data(), toml.size(), note, &problem));
  if (!problem.empty()) throw std::runtime_error(problem);
  return settings;
}

inline LiveStripPointer strip_of(std::uint32_t format, const channelstrip_settings* settings,
                                 double sample_rate = 48000) {
  const channelstrip_strip_options options{.format = format,
                                           .order = CHANNELSTRIP_ORDER_WAV,
                                           .sample_rate = sample_rate,
                                           .settings = settings};
  channelstrip_strip* strip = nullptr;
  succeed(channelstrip_strip_new(&options, &strip));
  return LiveStripPointer(strip);
}

inline std::uint32_t format_of(const char* name) {
  std::uint32_t format = 0;
  succeed(channelstrip_format_find(name, &format));
  return format;
}

inline std::uint32_t parameter_of(const char* symbol) {
  std::uint32_t id = 0;
  succeed(channelstrip_parameter_find(symbol, &id));
  return id;
}

}  // namespace channelstrip::test
