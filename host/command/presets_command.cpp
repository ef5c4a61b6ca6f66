#include "commands.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <stdexcept>
#include <string>

#include "command_line.h"
#include "shipped_presets.h"

namespace channelstrip::host {
namespace {

void list_presets() {
  const std::vector<ShippedPreset> presets = shipped_presets();
  if (presets.empty()) throw std::runtime_error("no presets stand beside the program");
  std::size_t width = 0;
  for (const ShippedPreset& preset : presets) width = std::max(width, preset.name.size());
  std::string text;
  for (const ShippedPreset& preset : presets) {
    text += fmt::format("{:<{}}  {}\n", preset.name, width, preset.purpose);
  }
  print_output(text);
}

}  // namespace

void add_presets_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand(
      "presets",
      "List the presets that come with the program\n\n"
      "A name and what the preset is for, one line each. Every command takes the names for "
      "--preset, and files.");
  command->footer(
      "Examples:\n"
      "  $ channelstrip presets\n"
      "  $ channelstrip render in.wav out.wav --preset voice\n"
      "  $ channelstrip curves voice");
  command->callback(list_presets);
}

}  // namespace channelstrip::host
