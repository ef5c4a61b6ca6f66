#include "commands.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "../info/information.h"
#include "command_line.h"

namespace channelstrip::host {
namespace {

struct InfoOptions {
  std::optional<std::string> format = {};  // none: all
  std::string library = Library::default_path();
  bool json = false;
};

std::span<const StemFormat> chosen_formats(const std::optional<std::string>& name) {
  if (!name) return stem_formats();
  if (const StemFormat* format = find_stem_format(*name)) return {format, 1};
  std::string names;
  for (const StemFormat& format : stem_formats()) {
    names += fmt::format("{}{}", names.empty() ? "" : ", ", format.name);
  }
  throw std::runtime_error(fmt::format("FORMAT: \"{}\" is none of {}", *name, names));
}

void print_information(const InfoOptions& options) {
  const auto formats = chosen_formats(options.format);
  const Information all = information(Library(options.library), formats);
  print_output(options.json     ? json_text(all)
               : options.format ? human_text(all.formats.front())
                                : human_text(all));
}

}  // namespace

void add_info_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand(
      "info",
      "Show versions, the loaded library, and the formats and their channels\n\n"
      "Every format has its channels, the order they have in files (wav: as WAV's channel mask; "
      "film: screen and surrounds from left to right, the LFE last), the mask, and how many "
      "groups of linked channels one strip holds. With FORMAT, one format and the link map of each "
      "style, written as a preset's [link] table takes it.");
  const auto options = std::make_shared<InfoOptions>();
  command->add_option("FORMAT", options->format, "Mono, Stereo ... 7.1; default: all");
  command->add_flag("--json", options->json, "Everything, as JSON");
  command->add_option("--library", options->library, "The library to load")
      ->type_name("PATH")
      ->capture_default_str();
  command->footer(
      "Examples:\n"
      "  $ channelstrip info\n"
      "  $ channelstrip info 7.1\n"
      "  $ channelstrip info --json | jq -r '.formats[].name'");
  command->callback([options] { print_information(*options); });
}

}  // namespace channelstrip::host
