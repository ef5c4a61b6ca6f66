// Writes the Turtle of the LV2 bundle.
//
//   write_bundle FOLDER BINARY PRESET...

#include <fmt/format.h>
#include <toml++/toml.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "ports.h"
#include "turtle.h"

namespace channelstrip::lv2 {
namespace {

std::string read(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error(path + " can't be read");
  return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream stream(path, std::ios::binary);
  stream << text;
  stream.close();
  if (!stream) throw std::runtime_error(path.string() + " can't be written");
}

struct FreeSettings {
  void operator()(channelstrip_settings* settings) const { channelstrip_settings_free(settings); }
};

}  // namespace

PluginPreset read_preset(const std::string& path) {
  const std::string text = read(path);
  const std::unique_ptr<channelstrip_settings, FreeSettings> settings(channelstrip_settings_new()),
      links(channelstrip_settings_new());
  std::string problem;
  const channelstrip_status status = channelstrip_settings_read(
      settings.get(), text.data(), text.size(),
      [](void* user, std::uint32_t line, std::uint32_t column, const char* what) {
        *static_cast<std::string*>(user) = fmt::format("{}:{}: {}", line, column, what);
      },
      &problem);
  if (status != CHANNELSTRIP_OK || !problem.empty()) {
    throw std::runtime_error(fmt::format("{}:{}", path, problem));
  }

  PluginPreset preset;
  preset.symbol = std::filesystem::path(path).stem();
  preset.name = toml::parse(text)["name"].value_or(preset.symbol);
  for (const channelstrip_parameter& p : port_parameters()) {
    double& value = preset.values.emplace_back();
    channelstrip_settings_get(settings.get(), p.id, &value);
  }
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    char map[256];
    channelstrip_settings_get_links(settings.get(), format, map, sizeof map, nullptr);
    channelstrip_settings_set_links(links.get(), format, map);
  }
  std::size_t length = 0;
  channelstrip_settings_write(links.get(), nullptr, 0, &length);
  preset.links.resize(length + 1);
  channelstrip_settings_write(links.get(), preset.links.data(), length + 1, nullptr);
  preset.links.resize(length);
  return preset;
}

}  // namespace channelstrip::lv2

int main(int argc, char** argv) try {
  using namespace channelstrip::lv2;
  const std::string_view who = argc > 1 ? argv[1] : "";
  if (argc < 4 || (who != "hosts" && who != "gstreamer")) {
    fmt::print(stderr, "usage: write_bundle hosts|gstreamer FOLDER BINARY PRESET...\n");
    return 2;
  }
  const Reader reader = who == "hosts" ? Reader::kAnyHost : Reader::kGStreamer;
  const std::filesystem::path folder = argv[2];
  std::vector<PluginPreset> presets;
  for (int i = 4; i < argc; ++i) presets.push_back(read_preset(argv[i]));
  write(folder / "manifest.ttl", manifest(argv[3], presets, reader));
  write(folder / kPresetsFile, descriptions(presets));
  if (kHasView && reader == Reader::kAnyHost) write(folder / kUiFile, ui_description());
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    write(folder / file_of(format), description(format, reader));
  }
  return 0;
} catch (const std::exception& fault) {
  fmt::print(stderr, "write_bundle: {}\n", fault.what());
  return 1;
}
