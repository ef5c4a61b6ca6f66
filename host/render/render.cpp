#include "render.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "../audio/audio_writer.h"
#include "../audio/broadcast_loudness.h"
#include "../run/strip_run.h"
#include "../system/interrupt.h"
#include "../system/standard_streams.h"
#include "../text/wording.h"

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
  for (StripRun::Piece piece; run.next(piece);) {
    if (const int signal = interrupted()) throw Interrupted{signal};
    writer.write(piece.output, piece.source);
    if (options.on_progress) {
      const double frames = static_cast<double>(piece.input.size()) / run.format().channels;
      options.on_progress(frames / sample_rate, run.part_read());
    }
  }
  writer.commit();
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
          .meters = run.stream().meters(),
          .clipped = writer.clipped(),
          .warnings = std::move(lines),
          .cut_short = run.cut_short()};
}

}  // namespace channelstrip::host
