// The presets that come with the program.

#pragma once

#include <string>
#include <vector>

namespace channelstrip::host {

struct ShippedPreset {
  std::string name;  // "voice"
  std::string path;
  std::string purpose;  // one sentence
};

// In alphabetical order; none if the program stands without them.
std::vector<ShippedPreset> shipped_presets();

// `path` itself if there is such a file, or the shipped preset of that name. Throws
// std::runtime_error, one line for the user, if a bare name is neither.
std::string preset_path(const std::string& path);

}  // namespace channelstrip::host
