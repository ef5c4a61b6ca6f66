#include "commands.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "../info/information.h"
#include "../info/preset_bands.h"
#include "choice.h"
#include "command_line.h"
#include "control/preset/left_out.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

struct InfoOptions {
  std::optional<std::string> format = {};  // none: all
  std::string library = Library::default_path();
  bool json = false;
  StripOptions strip = {};  // the preset, its assignments and whether to leave bands out
  double sample_rate = 48000;
};

std::span<const StemFormat> chosen_formats(const std::optional<std::string>& name) {
  if (!name) return stem_formats();
  if (const StemFormat* format = find_stem_format(*name)) return {format, 1};
  throw std::runtime_error(
      fmt::format("FORMAT: \"{}\" is none of {}", *name, fmt::join(stem_format_names(), ", ")));
}

void print_bands(const InfoOptions& options) {
  Preset preset = load_preset(options.strip.preset, options.strip.assignments);
  leave_out_bands_above(preset, options.sample_rate);
  for (const std::string& line : preset.remarks) print_message(line);
  const std::vector<JudgedBand> bands = judge_bands(preset, options.sample_rate);
  print_output(options.json ? bands_json(bands, options.sample_rate)
                            : bands_text(bands, options.sample_rate));
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
      "style, written as a preset's [link] table takes it. With --preset, how far each band of the "
      "preset is off at a sample rate, and how much noise it adds, because the library computes in "
      "single precision; \"!\" marks more than 0.3 dB or -90 dBFS.");
  const auto options = std::make_shared<InfoOptions>();
  command->add_option("FORMAT", options->format, "Mono, Stereo ... 7.1; default: all")
      ->check(one_of(stem_format_names()));
  command->add_flag("--json", options->json, "Everything, as JSON");
  command->add_option("--library", options->library, "The library to load")
      ->type_name("PATH")
      ->capture_default_str();
  add_preset_option(*command, "--preset", options->strip);
  command->add_option("--set", options->strip.assignments, "A setting over the preset's")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command->add_option("--rate", options->sample_rate, "Sample rate for --preset and --set")
      ->check(CLI::Range(1000.0, 768000.0))
      ->type_name("HZ")
      ->capture_default_str();
  command->footer(
      "Examples:\n"
      "  $ channelstrip info\n"
      "  $ channelstrip info 7.1\n"
      "  $ channelstrip info --preset voice --rate 192000\n"
      "  $ channelstrip info --json | jq -r '.formats[].name'");
  command->callback([options] {
    const bool about_bands = options->strip.preset || !options->strip.assignments.empty();
    about_bands ? print_bands(*options) : print_information(*options);
  });
}

}  // namespace channelstrip::host
