#include "shipped_presets.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "../text/encoding.h"
#include "control/preset/nearest.h"
#include "control/text/text_file.h"

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

// The same place in an installed tree and in a build.
fs::path shipped_folder() {
  std::error_code none;
  return fs::read_symlink("/proc/self/exe", none).parent_path() / CHANNELSTRIP_PRESETS;
}

// The beginning of the comment that a preset begins with, up to a mark that a blank follows.
std::string purpose_of(const std::string& path) {
  std::string comment;
  for (const std::string& line : split_lines(to_utf8(read_text_file(path)))) {
    if (!line.starts_with("# ")) break;
    comment += (comment.empty() ? "" : " ") + line.substr(2);
  }
  comment += ' ';
  return comment.substr(0, std::min({comment.find(". "), comment.find(": "), comment.find("; ")}));
}

}  // namespace

std::vector<ShippedPreset> shipped_presets() {
  std::vector<ShippedPreset> presets;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator(shipped_folder(), none)) {
    const fs::path& path = entry.path();
    if (path.extension() != ".toml") continue;
    presets.push_back({path.stem().string(), path.lexically_normal().string(), purpose_of(path)});
  }
  std::ranges::sort(presets, {}, &ShippedPreset::name);
  return presets;
}

std::string preset_path(const std::string& path) {
  std::error_code none;
  if (path.find('/') != std::string::npos || fs::exists(path, none)) return path;
  std::vector<std::string_view> names;
  const std::vector<ShippedPreset> presets = shipped_presets();
  for (const ShippedPreset& preset : presets) {
    if (path == preset.name) return preset.path;
    names.push_back(preset.name);
  }
  throw std::runtime_error(
      fmt::format("{}: no such file, and no preset that comes with the program{}", path,
                  suggestion(path, names, "channelstrip presets lists those")));
}

}  // namespace channelstrip::host
