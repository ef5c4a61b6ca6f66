#include "commands.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <vector>

#include "../meters/meters.h"
#include "../system/interrupt.h"
#include "command_line.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

constexpr double kShortest = 1, kLongest = 60000;  // ms

constexpr const char* kMetersDescription =
    "Write what a strip's meters show over an audio file, as a table\n"
    "Runs the file through a strip and writes a row per interval, for a spreadsheet, a script or "
    "a plot. No audio is written.";

constexpr const char* kMetersFooter = R"(Columns, in dB but for the time:
  time                  s from the beginning of the file to that of the interval
  input_peak_L ...      each channel's highest sample before the strip, behind
                        --gain-in, dBFS
  output_peak_L ...     and after the strip, --mix and --gain-out, dBFS
  level                 the detector's while that gain was in force, dBFS
  gain                  that of the link group reduced least, without makeup
  compressor_reduction  deepest of any group
  expander_reduction    deepest of any group, gate included
  channel_gain_L ...    that of each channel's link group, without makeup
  A gain is the lowest that lasted for a period of 64 frames; reductions count
  single samples. Both are the strip's own, whatever the mix. Silence is -inf,
  in JSON null.

Exit status:
  0  the table is complete
  1  an error, told in one line on standard error
  3  the table was written, but a file was cut short: it holds less than it states

Examples:
  $ channelstrip meters voice.wav --preset voice.toml -o voice.csv
  $ channelstrip meters film.wav --preset film_7.1.toml --interval 1000
  $ channelstrip meters voice.wav --set compressor.ratio=4 --jsonl)";

}  // namespace

void add_meters_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand("meters", kMetersDescription);
  const auto options = std::make_shared<MetersOptions>();
  command->add_option("IN", options->input, "Audio file of 1 to 8 channels; stays as it is")
      ->required();
  add_strip_options(*command, options->strip);
  command
      ->add_option("--interval", options->interval,
                   "Time per row, rounded to whole periods of 64 frames")
      ->type_name("MS")
      ->check(within(kShortest, kLongest, "ms"))
      ->capture_default_str();
  CLI::Option* csv = command->add_flag_callback(
      "--csv", [options] { options->format = RowFormat::kCsv; },
      "Rows of comma-separated values; the default");
  command
      ->add_flag_callback(
          "--jsonl", [options] { options->format = RowFormat::kJsonLines; },
          "Rows of JSON, one object per line")
      ->excludes(csv);
  command->add_option("-o,--output", options->output, "File to write; default: standard output")
      ->type_name("FILE");
  add_overwrite_option(*command, options->existing);
  command->footer(kMetersFooter);
  command->callback([options] {
    catch_interrupts();
    const auto [remarks, cut_short] = write_meters(*options);
    for (const std::string& line : remarks) print_message(line);
    for (const std::string& line : cut_short) print_message(line);
    if (!cut_short.empty()) throw CLI::RuntimeError(kIncomplete);
  });
}

}  // namespace channelstrip::host
