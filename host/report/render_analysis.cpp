#include "render_analysis.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <stdexcept>

#include "../run/strip_run.h"
#include "../system/interrupt.h"
#include "../system/parallel.h"
#include "control/design/dynamics_coefficients.h"
#include "control/design/strip_coefficients.h"

namespace channelstrip::host {
namespace {

std::string shape(const AudioFormat& format) {
  return fmt::format("{} channel{} at {} Hz", format.channels, format.channels == 1 ? "" : "s",
                     format.sample_rate);
}

void require_same_shape(const std::string& output, const AudioFormat& actual,
                        const std::string& input, const AudioFormat& expected) {
  if (actual.channels == expected.channels && actual.sample_rate == expected.sample_rate) return;
  throw std::runtime_error(fmt::format("{}: {}, no render of {} with its {}", output, shape(actual),
                                       input, shape(expected)));
}

RenderAnalysis prepare(const std::string& input, const std::string& output, const StripRun& run,
                       const AudioFormat& output_format) {
  const ChannelLayout& layout = run.layout();
  const auto strip = design_strip(run.preset().settings, run.format().sample_rate, layout);
  const LinkMap links = links_of(strip.dynamics);
  const std::vector<Part> parts = pictured_parts(links, layout);
  RenderAnalysis analysis{
      .preset = run.preset(),
      .layout = layout,
      .parts = parts,
      .before = {input, run.format(), SignalAnalysis(run.format(), layout, parts)},
      .after = {output, output_format, SignalAnalysis(output_format, layout, parts)},
      .groups = {},
      .comparison = Comparison(output_format)};
  for (const Part& part : link_groups(links, layout)) analysis.groups.push_back({part});
  return analysis;
}

// Linked channels have the same gain, until a change of settings links them differently.
float least_gain(const MeterReading& period, const Part& part) {
  float least = period.channel_gain[part.channels.front()];
  for (const std::size_t channel : part.channels) {
    least = std::min(least, period.channel_gain[channel]);
  }
  return least;
}

// Reads as many frames as there should be.
void fill(std::span<float> frames, AudioReader& reader, const std::string& path,
          const std::string& input) {
  if (reader.read(frames).size() == frames.size()) return;
  throw std::runtime_error(fmt::format("{}: shorter than {}, no render of it", path, input));
}

// Samples, a few milliseconds' work on each thread.
constexpr std::size_t kPending = std::size_t{1} << 17;

// What waits for its analysis.
struct Pending {
  std::vector<float> before = {}, after = {};

  void analyse(RenderAnalysis& analysis) {
    in_parallel(2, 2, [&](std::size_t file) {
      file == 0 ? analysis.before.signal.add(before) : analysis.after.signal.add(after);
    });
    before.clear();
    after.clear();
  }
};

void require_end(AudioReader& reader, const std::string& path, const std::string& input) {
  std::vector<float> frame(static_cast<std::size_t>(reader.format().channels));
  if (reader.read(frame).empty()) return;
  throw std::runtime_error(fmt::format("{}: longer than {}, no render of it", path, input));
}

}  // namespace

RenderAnalysis analyse_render(const std::string& input, const std::string& output,
                              const StripOptions& strip, const OnProgress& on_progress) {
  StripRun run(input, strip);
  AudioReader rendered(output);
  require_same_shape(output, rendered.format(), input, run.format());
  RenderAnalysis analysis = [&] {
    try {
      return prepare(input, output, run, rendered.format());
    } catch (const std::invalid_argument& error) {
      throw std::runtime_error(fmt::format("{}: {}", input, error.what()));
    }
  }();
  run.stream().observe([&](const MeterReading& period) {
    for (auto& [part, reduction] : analysis.groups) {
      reduction.add(least_gain(period, part));
    }
  });

  Pending pending;
  const double sample_rate = run.format().sample_rate;
  for (StripRun::Piece piece; run.next(piece);) {
    if (const int signal = interrupted()) throw Interrupted{signal};
    pending.before.insert(pending.before.end(), piece.input.begin(), piece.input.end());
    pending.after.resize(pending.after.size() + piece.output.size());
    const std::span<float> actual = std::span(pending.after).last(piece.output.size());
    fill(actual, rendered, output, input);
    analysis.comparison.add(piece.output, actual);
    if (pending.before.size() >= kPending) pending.analyse(analysis);
    on_progress(static_cast<double>(piece.input.size()) / run.format().channels / sample_rate,
                run.part_read());
  }
  pending.analyse(analysis);
  require_end(rendered, output, input);
  analysis.frames = run.frames_read();
  analysis.compressor_reduction = run.stream().meters().compressor_reduction;
  analysis.expander_reduction = run.stream().meters().expander_reduction;
  analysis.remarks = run.remarks();
  analysis.cut_short = run.cut_short();
  return analysis;
}

}  // namespace channelstrip::host
