#include "render.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <stdexcept>
#include <utility>

#include "../audio/audio_writer.h"
#include "../audio/broadcast_loudness.h"
#include "../loudness/programme.h"
#include "../run/strip_run.h"
#include "../system/interrupt.h"
#include "../system/standard_streams.h"
#include "../text/wording.h"
#include "control/design/dynamics.h"

namespace channelstrip::host {
namespace {

// Changes of the preset that never come.
std::vector<std::string> warnings_of_changes(const Preset& preset, double seconds) {
  const auto first = std::ranges::find_if(preset.changes, [&](const Preset::Change& change) {
    return change.time > 0 && change.time >= seconds;
  });
  const auto count = preset.changes.end() - first;
  if (count == 0) return {};
  return {fmt::format("{} change{} of settings, from {} on, come{} after the end", count,
                      count == 1 ? "" : "s", duration(first->time), count == 1 ? "s" : "")};
}

std::vector<std::string> warnings(const std::string& output, const AudioWriter& writer,
                                  bool loudness_left_out) {
  std::vector<std::string> lines;
  if (const long long clipped = writer.clipped(); clipped > 0) {
    lines.push_back(
        fmt::format("{} sample{} above full scale clipped", clipped, clipped == 1 ? "" : "s"));
  }
  if (!writer.keeps_channel_map()) {
    lines.push_back(fmt::format("{} doesn't say which speaker each channel feeds", output));
  }
  if (!writer.lost_metadata().empty()) {
    lines.push_back(
        fmt::format("{} doesn't keep {}", output, fmt::join(writer.lost_metadata(), ", ")));
  }
  if (loudness_left_out) {
    lines.push_back(
        fmt::format("{} leaves out the loudness in bext, which was the input's", output));
  }
  return lines;
}

std::span<const float> times(float gain, std::span<const float> samples,
                             std::vector<float>& scaled) {
  scaled.resize(samples.size());
  std::ranges::transform(samples, scaled.begin(), [gain](float x) { return gain * x; });
  return scaled;
}

// Runs the input through the strip, once of `passes` times; each takes an equal part of the
// progress.
template <typename Use>
void pass(StripRun& run, const RenderOptions& options, int number, int passes, Use use) {
  const double sample_rate = run.format().sample_rate;
  for (StripRun::Piece piece; run.next(piece);) {
    if (const int signal = interrupted()) throw Interrupted{signal};
    use(piece);
    if (!options.on_progress) continue;
    const double frames = static_cast<double>(piece.input.size()) / run.format().channels;
    const double part = run.part_read();
    options.on_progress(frames / sample_rate / passes, part < 0 ? part : (number + part) / passes);
  }
}

// Measures what the strip makes of the input and begins again.
Normalisation measure(StripRun& run, const RenderOptions& options) {
  ProgrammeMeter meter = [&] {
    try {
      return ProgrammeMeter(run.format().sample_rate, run.layout());
    } catch (const std::invalid_argument& error) {
      throw std::runtime_error(fmt::format("{}: {}", input_name(options.input), error.what()));
    }
  }();
  pass(run, options, 0, 2, [&](const StripRun::Piece& piece) { meter.add(piece.output); });
  run.rewind();
  return normalise(meter.programme(), *options.loudness);
}

}  // namespace

RenderReport render(const RenderOptions& options) {
  StripRun run(options.input, options.strip);
  const AudioFormat format = output_format(run.format(), options.output, options.choice);
  Metadata metadata = run.metadata();
  const bool loudness_left_out = forget_loudness(metadata.chunks);
  AudioWriter writer(options.output, format,
                     {.dither = options.dither.value_or(usual_dither(format)),
                      .metadata = std::move(metadata),
                      .existing = options.existing,
                      .frames = run.frames_stated()});
  const double sample_rate = run.format().sample_rate;
  std::optional<Normalisation> normalisation;
  if (options.loudness) normalisation = measure(run, options);
  const auto gain = static_cast<float>(db_to_linear(normalisation ? normalisation->gain : 0));
  const int passes = normalisation ? 2 : 1;
  std::vector<float> scaled;
  pass(run, options, passes - 1, passes, [&](const StripRun::Piece& piece) {
    writer.write(gain == 1 ? piece.output : times(gain, piece.output, scaled), piece.source);
  });
  writer.commit();
  StripMeters meters = run.stream().meters();
  for (float& peak : meters.output_peak) peak *= gain;
  std::vector<std::string> lines = run.remarks();
  std::ranges::move(warnings(output_name(options.output), writer, loudness_left_out),
                    std::back_inserter(lines));
  std::ranges::move(
      warnings_of_changes(run.preset(), static_cast<double>(run.frames_read()) / sample_rate),
      std::back_inserter(lines));
  return {.preset_name = run.preset().name,
          .format = run.format(),
          .output_format = format,
          .layout = run.layout(),
          .frames = run.frames_read(),
          .meters = std::move(meters),
          .normalisation = normalisation,
          .clipped = writer.clipped(),
          .warnings = std::move(lines),
          .cut_short = run.cut_short()};
}

}  // namespace channelstrip::host
