#include "render_arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "../audio/containers.h"
#include "../system/standard_streams.h"
#include "choice.h"
#include "command_line.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

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
  channelstrip render show.wav out.wav --preset podcast_voice --loudness -16
  channelstrip render takes/*.wav mastered --quiet --json >peaks.json)";

}  // namespace

void add_render_arguments(CLI::App& command, RenderArguments& options) {
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
      ->check(one_of(container_names()))
      ->type_name("TYPE");
  command
      .add_option("--bits", options.bits,
                  "Sample type to write: 16, 24, 32 (integers), 32f or 64f (floating point); "
                  "default: IN's")
      ->check(one_of(bits_names()))
      ->type_name("BITS");
  command
      .add_option("--dither", options.dither,
                  "none or tpdf, triangular noise before samples become integers; default: tpdf "
                  "below 24 bits")
      ->check(CLI::IsMember({"none", "tpdf"}))
      ->type_name("KIND");
  CLI::Option* loudness =
      command
          .add_option("--loudness", options.loudness,
                      "Integrated loudness of each output, -70 to 0 (BS.1770, EBU R 128): one gain "
                      "behind everything else takes it there, before dither. Takes a second pass; "
                      "a lossy coding comes after it and moves both measures a little")
          ->check(within(-70, 0, "LUFS"))
          ->type_name("LUFS");
  command
      .add_option(
          "--true-peak", options.true_peak,
          "With --loudness: true peak that no output exceeds, -60 to 0; louder ones get less "
          "gain, none is limited or clipped; default: -1")
      ->check(within(-60, 0, "dBTP"))
      ->needs(loudness)
      ->type_name("DBTP");
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

Batch batch_of(const RenderArguments& options) {
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
  std::optional<LoudnessTarget> loudness;
  if (options.loudness) {
    loudness.emplace(LoudnessTarget{.loudness = *options.loudness});
    loudness->true_peak = options.true_peak.value_or(loudness->true_peak);
  }
  const std::vector<InputFile> inputs = find_inputs(names, options.recursive, out);
  std::error_code none;
  const bool many = names.size() > 1 || std::filesystem::is_directory(names.front(), none);
  const auto files = choose_outputs(inputs, many, out, options.output_type, options.strip.files());
  return {.files = files,
          .strip = options.strip,
          .choice = choice,
          .dither = dither,
          .loudness = loudness,
          .existing = options.existing,
          .makes_folders = files.front().output != out,
          .jobs = options.jobs.value_or(std::max(1u, std::thread::hardware_concurrency()))};
}

}  // namespace channelstrip::host
