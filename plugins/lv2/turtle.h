// The bundle's description in Turtle, made from the table of parameters.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace channelstrip::lv2 {

// A preset as its values: those of the ports, and the link maps as the plugins' state holds them.
struct PluginPreset {
  std::string symbol;  // "film_7.1"
  std::string name;
  std::vector<double> values;  // one per port parameter
  std::string links;           // "" without any
};

// Throws std::runtime_error, in one line, for a file that isn't a preset or holds what ports can't.
PluginPreset read_preset(const std::string& path);

// The names of the files, in the bundle.
std::string file_of(std::uint32_t format);
inline constexpr char kPresetsFile[] = "presets.ttl";
inline constexpr char kUiFile[] = "ui.ttl";

// Whether the bundle holds a binary that draws.
#ifdef CHANNELSTRIP_VIEW
inline constexpr bool kHasView = true;
#else
inline constexpr bool kHasView = false;
#endif

// GStreamer offers plugins with one audio input and takes every input of a group for a channel: for
// it the key is a control voltage, and only channels are in groups.
enum class Reader { kAnyHost, kGStreamer };

std::string manifest(const std::string& binary, const std::vector<PluginPreset>& presets,
                     Reader reader);
std::string description(std::uint32_t format, Reader reader);
std::string descriptions(const std::vector<PluginPreset>& presets);
// Of the window.
std::string ui_description();

}  // namespace channelstrip::lv2
