// Extensions that the packaged headers lack, as CLAP's public documentation describes them.

#pragma once

#include <clap/plugin.h>
#include <clap/string-sizes.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace channelstrip::clap {

// Text as CLAP's structures hold it; what doesn't fit is cut off.
template <std::size_t Size>
void write(std::string_view text, char (&to)[Size]) {
  to[text.copy(to, Size - 1)] = '\0';
}

// Port configurations, of which a host selects one while the plugin is inactive.
inline constexpr char kPortsConfigExtension[] = "clap.audio-ports-config";
struct PortsConfig {
  clap_id id;
  char name[CLAP_NAME_SIZE];
  std::uint32_t input_ports, output_ports;
  bool has_main_input;
  std::uint32_t main_input_channels;
  const char* main_input_type;
  bool has_main_output;
  std::uint32_t main_output_channels;
  const char* main_output_type;
};
struct PortsConfigExtension {
  std::uint32_t(CLAP_ABI* count)(const clap_plugin_t* plugin);
  bool(CLAP_ABI* get)(const clap_plugin_t* plugin, std::uint32_t index, PortsConfig* config);
  bool(CLAP_ABI* select)(const clap_plugin_t* plugin, clap_id config);
};

// What the channels of a surround port are.
inline constexpr char kSurroundExtension[] = "clap.surround/4";
inline constexpr char kSurroundDraft[] = "clap.surround.draft/4";  // the same
inline constexpr char kSurroundPort[] = "surround";
enum Speaker : std::uint8_t {
  kFrontLeft = 0,
  kFrontRight = 1,
  kFrontCenter = 2,
  kLowFrequency = 3,
  kBackLeft = 4,
  kBackRight = 5,
  kBackCenter = 8,
  kSideLeft = 9,
  kSideRight = 10
};
struct SurroundExtension {
  // A bit for each speaker.
  bool(CLAP_ABI* is_channel_mask_supported)(const clap_plugin_t* plugin, std::uint64_t mask);
  // Returns how many speakers it has written.
  std::uint32_t(CLAP_ABI* get_channel_map)(const clap_plugin_t* plugin, bool is_input,
                                           std::uint32_t port, std::uint8_t* map,
                                           std::uint32_t capacity);
};

inline constexpr char kRenderExtension[] = "clap.render";
struct RenderExtension {
  bool(CLAP_ABI* has_hard_realtime_requirement)(const clap_plugin_t* plugin);
  bool(CLAP_ABI* set)(const clap_plugin_t* plugin, std::int32_t mode);
};

inline constexpr char kTailExtension[] = "clap.tail";
struct TailExtension {
  std::uint32_t(CLAP_ABI* get)(const clap_plugin_t* plugin);  // frames
};

}  // namespace channelstrip::clap
