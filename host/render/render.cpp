#include "render.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "../preset.h"
#include "audio_reader.h"
#include "audio_writer.h"
#include "interrupt.h"

namespace channelstrip::host {
namespace {

constexpr std::size_t kPiece = 4096;  // frames per read and write

const StemFormat* forced_format(const RenderOptions& options) {
  if (!options.format) return nullptr;
  if (const StemFormat* format = find_stem_format(*options.format)) return format;
  std::vector<std::string_view> names;
  for (const StemFormat& format : stem_formats()) names.push_back(format.name);
  throw std::runtime_error(
      fmt::format("--format: \"{}\" is none of {}", *options.format, fmt::join(names, ", ")));
}

ChannelLayout layout_of(const AudioFormat& format, const RenderOptions& options) {
  try {
    return choose_layout(format.channels, speakers(format), forced_format(options));
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(fmt::format("{}: {}", options.input, error.what()));
  }
}

StripCoefficients design(const Preset& preset, double sample_rate, const ChannelLayout& layout,
                         const RenderOptions& options) {
  check_fits(preset, sample_rate, layout);
  try {
    return design_strip(preset.settings, sample_rate, layout);
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(
        fmt::format("{}: {}", options.preset.value_or(options.input), error.what()));
  }
}

void require_different_files(const std::string& input, const std::string& output) {
  std::error_code none_there;
  if (std::filesystem::equivalent(input, output, none_there)) {
    throw std::runtime_error(fmt::format("{}: is the input itself", output));
  }
}

}  // namespace

RenderReport render(const RenderOptions& options) {
  AudioReader reader(options.input);
  require_different_files(options.input, options.output);
  const Preset preset = options.preset ? read_preset(*options.preset) : Preset{};

  RenderReport report;
  report.preset_name = preset.name;
  report.format = reader.format();
  report.layout = layout_of(report.format, options);
  const StemFormat& format = *report.layout.format;
  const StripCoefficients coefficients =
      design(preset, report.format.sample_rate, report.layout, options);

  const Library library(options.library);
  StripStream stream(library.entry_point(format), format, coefficients);
  AudioWriter writer(options.output, output_format(report.format, options.output));

  std::vector<float> piece(kPiece * static_cast<std::size_t>(format.channels));
  std::vector<float> processed;
  for (bool more = true; more;) {
    if (const int signal = interrupted()) throw Interrupted{signal};
    const std::span<const float> frames = reader.read(piece);
    more = !frames.empty();
    processed.clear();
    stream.process(frames, processed);
    if (!more) stream.finish(processed);
    writer.write(processed);
  }
  writer.commit();

  report.frames = reader.position();
  report.meters = stream.meters();
  report.clipped = writer.clipped();
  report.keeps_channel_map = writer.keeps_channel_map();
  return report;
}

}  // namespace channelstrip::host
