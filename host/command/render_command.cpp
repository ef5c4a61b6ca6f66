#include "commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "../audio/containers.h"
#include "../render/batch.h"
#include "../render/summary.h"
#include "../run/strip_run.h"
#include "../system/interrupt.h"
#include "../system/standard_streams.h"
#include "../system/text_output.h"
#include "command_line.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

struct CommandOptions {
  std::vector<std::string> files;  // IN... OUT
  StripOptions strip;
  std::optional<std::string> output_type, bits, dither;
  std::optional<unsigned> jobs;
  Existing existing = Existing::kKept;
  bool recursive = false, quiet = false, json = false;
};

constexpr const char* kRenderFooter =
    R"(Each file goes through a strip of its own. Outputs appear only when they are complete; one that
fails leaves nothing behind and stops no other.

Exit status:
  0  everything was rendered
  1  something was refused or failed, each told in one line on standard error
  3  everything was rendered, but a file was cut short: it holds less than it states

Examples:
  channelstrip render voice.wav out.wav --preset voice.toml
  channelstrip render music.wav ducked.wav --preset duck.toml --key voice.wav
  channelstrip render film.wav out.wav --order film --set compressor.threshold=-18
  channelstrip render takes mastered --preset voice --recursive
  channelstrip render takes/*.wav mastered --quiet --json >peaks.json)";

void add_options(CLI::App& command, CommandOptions& options) {
  // IN takes every name, the last of which is OUT. The argument OUT is there for --help, and for
  // the message when it is missing.
  command
      .add_option_function<std::vector<std::string>>(
          "IN",
          [&](const std::vector<std::string>& names) {
            options.files = names;
            command.get_option("OUT")->required(names.size() < 2);
          },
          "Audio files of 1 to 8 channels, or folders of them; - is standard input")
      ->required();
  command
      .add_option("OUT",
                  "File to write; its extension chooses the container, IN the sample type. Or a "
                  "folder, which is made if need be: outputs take their inputs' names there. - is "
                  "standard output")
      ->required();
  add_strip_options(command, options.strip);
  command
      .add_option("--output-type", options.output_type,
                  "Container to write, wav, flac ..., and the extension of outputs in a folder; "
                  "default: as OUT's extension says, or IN's")
      ->type_name("TYPE");
  command
      .add_option("--bits", options.bits,
                  "Sample type to write: 16, 24, 32 (integers), 32f or 64f (floating point); "
                  "default: IN's")
      ->type_name("BITS");
  command
      .add_option("--dither", options.dither,
                  "none or tpdf, triangular noise before samples become integers; default: tpdf "
                  "below 24 bits")
      ->check(CLI::IsMember({"none", "tpdf"}))
      ->type_name("KIND");
  command
      .add_option("--jobs", options.jobs,
                  "Files to render at a time; default: as many as there are processors")
      ->type_name("N");
  add_overwrite_option(command, options.existing);
  command.add_flag("-r,--recursive", options.recursive,
                   "Render the folders in a folder IN, too; OUT gets the same ones");
  command.add_flag("-q,--quiet", options.quiet, "Show neither progress nor summary, only errors");
  command.add_flag("--json", options.json,
                   "A summary of all files as a JSON document on standard output: peaks in dBFS, "
                   "reductions in dB, null for infinity");
  command.footer(kRenderFooter);
}

Batch batch_of(const CommandOptions& options) {
  if (options.jobs == 0u) throw std::runtime_error("--jobs: at least 1");
  const std::vector<std::string> names(options.files.begin(), options.files.end() - 1);
  const std::string& out = options.files.back();
  if (options.strip.key == kStandardStream &&
      std::ranges::find(names, kStandardStream) != names.end()) {
    throw std::runtime_error("--key: standard input is the audio already");
  }
  if (options.json && out == kStandardStream) {
    throw std::runtime_error("--json: standard output takes the audio already");
  }
  OutputChoice choice;
  if (options.output_type) choice.container = container_from_name(*options.output_type);
  if (options.bits) choice.sample_type = sample_type_from_bits(*options.bits);
  std::optional<Dither> dither;
  if (options.dither) dither = *options.dither == "tpdf" ? Dither::kTriangular : Dither::kNone;
  const std::vector<InputFile> inputs = find_inputs(names, options.recursive, out);
  std::error_code none;
  const bool many = names.size() > 1 || std::filesystem::is_directory(names.front(), none);
  const auto files = choose_outputs(inputs, many, out, options.output_type, options.strip.files());
  return {.files = files,
          .strip = options.strip,
          .choice = choice,
          .dither = dither,
          .existing = options.existing,
          .makes_folders = files.front().output != out,
          .jobs = options.jobs.value_or(std::max(1u, std::thread::hardware_concurrency()))};
}

std::string json_document(const nlohmann::json& files) {
  using Json = nlohmann::json;
  return Json{{"files", files}}.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

void run(const CommandOptions& options) {
  const Batch batch = batch_of(options);
  check_strip_options(batch.strip);
  auto files = nlohmann::json::array();
  const bool many = batch.files.size() > 1;
  bool incomplete = false;
  Tally tally;
  Progress progress(batch.files.size(), !options.quiet);
  render_all(batch, progress, [&](const RenderResult& result) {
    if (!result.report) {
      ++tally.failed;
      print_message(result.error);
      files.push_back(
          {{"input", result.file.input}, {"output", result.file.output}, {"error", result.error}});
      return;
    }
    if (!options.quiet) {
      const auto told = many ? summary_line : summary_text;
      std::fputs(told(result.file, *result.report).c_str(), stderr);
    }
    ++tally.rendered;
    tally.with_warnings += result.report->warnings.empty() ? 0 : 1;
    tally.seconds += static_cast<double>(result.report->frames) / result.report->format.sample_rate;
    for (const std::string& line : result.report->cut_short) {
      incomplete = true;
      print_message(line);
    }
    files.push_back(summary_json(result.file, *result.report));
  });
  if (many && !options.quiet) std::fputs(tally_line(tally).c_str(), stderr);
  if (options.json) {
    TextOutput output;
    output.write(json_document(files));
    output.commit();
  }
  if (tally.failed > 0) throw CLI::RuntimeError(1);
  if (incomplete) throw CLI::RuntimeError(kIncomplete);
}

}  // namespace

void add_render_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand("render", "Render audio files through a strip");
  const auto options = std::make_shared<CommandOptions>();
  add_options(*command, *options);
  command->callback([options] {
    catch_interrupts();
    run(*options);
  });
}

}  // namespace channelstrip::host
