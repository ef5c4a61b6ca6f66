#include "commands.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "../pictures/png.h"
#include "../pictures/strip_curves.h"

#include "../system/text_output.h"
#include "command_line.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

constexpr double kPixels = 2;  // of a PNG per unit of the SVG

struct CurvesOptions {
  StripOptions strip;
  double sample_rate = 48000;
  double time = 0;
  std::optional<std::string> output;
  Existing existing = Existing::kKept;
  bool text = false;
};

enum class Picture { kSvg, kPng };

Picture picture_of(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  if (extension == ".svg") return Picture::kSvg;
  if (extension == ".png") return Picture::kPng;
  throw std::runtime_error(fmt::format("{}: a picture's name ends in .svg or .png", path));
}

void draw(const CurvesOptions& options, const StripCurves& curves) {
  const Picture picture = picture_of(*options.output);
  const std::string svg = svg_file(heading_of(curves), charts_of(curves), {}, note_of(curves));
  TextOutput output(options.output, options.strip.files(), options.existing);
  output.write(picture == Picture::kSvg ? svg : to_png(svg, kPixels));
  output.commit();
}

void run(const CurvesOptions& options) {
  if (options.output) picture_of(*options.output);  // refuses other files before the work begins
  if (!(options.sample_rate >= 1000 && options.sample_rate <= 768000)) {
    throw std::runtime_error(
        fmt::format("--rate: {} Hz is not 1000 to 768000 Hz", options.sample_rate));
  }
  if (!(options.time >= 0)) {
    throw std::runtime_error(fmt::format("--at: {} s is not 0 s or more", options.time));
  }
  const StripCurves curves = strip_curves(options.strip, options.sample_rate, options.time);
  for (const std::string& line : curves.remarks) print_message(line);
  if (options.output) draw(options, curves);
  if (options.text || !options.output) print_output(curve_text(curves));
}

}  // namespace

void add_curves_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand(
      "curves",
      "Show what settings do, without any audio\n"
      "Magnitude and phase of every band and of the bands before and after the dynamics; what "
      "compressor, expander and gate make of a steady level; and how their gain moves when the "
      "level jumps, measured with the library itself. Where a preset changes settings in time, the "
      "heading says from when to when those shown hold, and when they change. Gains in and out and "
      "the mix are not in the curves.");
  const auto options = std::make_shared<CurvesOptions>();
  add_preset_option(*command, "PRESET,--preset", options->strip);
  command
      ->add_option("--set", options->strip.assignments,
                   "A setting over the preset's, compressor.threshold=-18; may be repeated")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command
      ->add_option("-o,--output", options->output,
                   "Picture to write, .svg or .png; without it the curves are told as text")
      ->type_name("FILE");
  add_overwrite_option(*command, options->existing);
  command->add_flag("--text", options->text, "Tell the curves as text besides writing a picture");
  command->add_option("--rate", options->sample_rate, "Sample rate of the audio, 1000 to 768000")
      ->type_name("HZ")
      ->capture_default_str();
  command
      ->add_option("--at", options->time,
                   "Show the settings in force at this time, where the preset has [[at]] tables")
      ->type_name("SECONDS")
      ->capture_default_str();
  command->add_option("--format", options->strip.format, "Stem format whose channel links to tell")
      ->check(CLI::IsMember(stem_format_names(), CLI::ignore_case))
      ->type_name("NAME");
  command->add_option("--library", options->strip.library, "The library to measure")
      ->type_name("PATH")
      ->capture_default_str();
  command->footer(
      "Examples:\n"
      "  $ channelstrip curves presets/voice.toml\n"
      "  $ channelstrip curves presets/voice.toml -o voice.svg\n"
      "  $ channelstrip curves presets/voice.toml --set compressor.ratio=8 -o harder.png\n"
      "  $ channelstrip curves ride.toml --at 62.5 -o ride.svg");
  command->callback([options] { run(*options); });
}

}  // namespace channelstrip::host
