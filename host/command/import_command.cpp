#include "commands.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "../import/filter_list.h"
#include "../import/imported_preset.h"
#include "../system/interrupt.h"
#include "../system/standard_streams.h"
#include "../system/text_output.h"
#include "../text/encoding.h"
#include "../text/wording.h"
#include "command_line.h"

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

struct ImportOptions {
  std::string input;
  std::optional<std::string> output = {};
  Existing existing = Existing::kKept;
};

void import_filters(const ImportOptions& options) {
  FilterList list = parse_filter_list(to_utf8(read_text(options.input)));
  const std::string name = input_name(options.input);
  fit_to_preset(list);
  for (const auto& [source, reason] : list.left_out) {
    print_message(fmt::format("{}:{}: left out: {}", name, source.number, reason));
  }
  if (list.bands.empty() && list.preamps.empty()) {
    throw std::runtime_error(fmt::format("{}: no filter for a preset", name));
  }
  const fs::path path(name);
  const std::string text =
      preset_text(list, to_utf8(path.stem().string()), one_line(to_utf8(path.filename().string())));
  const std::array inputs{options.input};
  TextOutput output(options.output, inputs, options.existing);
  output.write(text);
  output.commit();
  if (!list.left_out.empty()) throw CLI::RuntimeError(kIncomplete);
}

}  // namespace

void add_import_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand(
      "import",
      "Make a preset of a Room EQ Wizard or Equalizer APO filter list\n\n"
      "Peaks, shelves, passes, notches and all-passes become bands, a preamp becomes makeup gain. "
      "The preset names the line that each band comes from. What it can't hold - more than eight "
      "filters, filters for single channels, graphic equalisers, IIR coefficients - is told on "
      "standard error, one line each, and in the preset's last lines. Filters that are off are "
      "left out silently.");
  const auto options = std::make_shared<ImportOptions>();
  command
      ->add_option("FILE", options->input,
                   "Text file: Room EQ Wizard's \"Export filter settings as text\" or an Equalizer "
                   "APO configuration; UTF-8, UTF-16 or ISO 8859-1; - is standard input")
      ->required();
  command->add_option("-o,--output", options->output, "Preset to write; default: standard output")
      ->type_name("PRESET.toml");
  add_overwrite_option(*command, options->existing);
  command->footer(
      "Exit status:\n"
      "  0  everything in FILE became part of the preset\n"
      "  3  a preset was written, but something was left out\n"
      "  1  an error, told in one line on standard error; no preset was written\n"
      "\n"
      "Examples:\n"
      "  $ channelstrip import room.txt -o room.toml\n"
      "  $ channelstrip render in.wav out.wav --preset room.toml");
  command->callback([options] {
    catch_interrupts();
    import_filters(*options);
  });
}

}  // namespace channelstrip::host
