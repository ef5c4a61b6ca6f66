// What plugins are compared with: strips of the control library on the same audio.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace channelstrip::plugin_test {

inline constexpr double kRate = 48000;

using Planar = std::vector<std::vector<float>>;

// The same in every run, within a half of full scale.
Planar noise(std::size_t channels, std::size_t frames);

bool are_finite(const Planar& audio);

std::uint32_t format_of(const char* name);
std::uint32_t channels_of(std::uint32_t format);
std::uint32_t id_of(const std::string& symbol);

struct FreeSettings {
  void operator()(channelstrip_settings* settings) const { channelstrip_settings_free(settings); }
};
using Settings = std::unique_ptr<channelstrip_settings, FreeSettings>;

// Everything at work, a low band whose floats take a search among it.
struct Setting {
  const char* symbol;
  double value;
};
inline constexpr Setting kBusy[] = {{"eq1_on", 1},
                                    {"eq1_frequency", 41.3},
                                    {"eq1_gain", 5.3},
                                    {"eq1_q", 0.7071},
                                    {"eq4_on", 1},
                                    {"eq4_frequency", 3300},
                                    {"eq4_gain", -4.2},
                                    {"eq4_position", 1},
                                    {"compressor_on", 1},
                                    {"compressor_threshold", -31.7},
                                    {"compressor_ratio", 3},
                                    {"expander_on", 1},
                                    {"expander_threshold", -42},
                                    {"gain_in", 1.1}};
Settings busy_settings();

// What a strip makes of it in one call, with the changes in it.
Planar expected(std::uint32_t format, const channelstrip_settings* settings, const Planar& input,
                const std::vector<float>& key, const std::vector<channelstrip_event>& changes = {});

}  // namespace channelstrip::plugin_test
