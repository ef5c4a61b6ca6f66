#include "containers.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sndfile.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace channelstrip::host {
namespace {

constexpr std::pair<std::string_view, int> kExtensions[] = {
    {"wav", SF_FORMAT_WAV},
    {"wave", SF_FORMAT_WAV},
    {"rf64", SF_FORMAT_RF64},
    {"w64", SF_FORMAT_W64},
    {"flac", SF_FORMAT_FLAC},
    {"aif", SF_FORMAT_AIFF},
    {"aiff", SF_FORMAT_AIFF},
    {"aifc", SF_FORMAT_AIFF},
    {"caf", SF_FORMAT_CAF},
    {"au", SF_FORMAT_AU},
    {"snd", SF_FORMAT_AU},
    {"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
    {"oga", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
    {"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
    {"mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}};

std::optional<int> find(std::string_view name) {
  const auto* const found =
      std::ranges::find(kExtensions, name, &std::pair<std::string_view, int>::first);
  return found == std::end(kExtensions) ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<int> container_of(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension.empty() ? std::nullopt : find(std::string_view(extension).substr(1));
}

int container_from_name(std::string_view name) {
  if (const auto container = find(name)) return *container;
  throw std::runtime_error(
      fmt::format("\"{}\" is none of {}", name, fmt::join(container_names(), ", ")));
}

std::vector<std::string> container_names() {
  std::vector<std::string> names;
  for (const auto& [extension, container] : kExtensions) names.emplace_back(extension);
  return names;
}

std::string libsndfile_name(int container_or_sample_type) {
  SF_FORMAT_INFO info = {};
  info.format = container_or_sample_type;
  sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info);
  return info.name ? info.name : "unknown";
}

}  // namespace channelstrip::host
