// How the gain moves when the level jumps up and down.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "strip_curves.h"

namespace channelstrip::host {
namespace {

constexpr std::size_t kPoints = 480;  // of a line, as many as it is pixels wide

// The samples until every term is within 0.05 dB of where it settles.
std::size_t settling(const GainCourse& course) {
  std::size_t last = 1;
  for (const std::vector<double>* gain : {&course.compressor, &course.expander}) {
    std::size_t i = gain->size();
    while (i > last && std::abs((*gain)[i - 1] - gain->back()) < 0.05) --i;
    last = std::max(last, i);
  }
  return std::min(last + last / 10 + 1, course.total.size());
}

// Time in milliseconds, or in seconds for a course of 1 s and more.
struct TimeScale {
  TimeScale(std::size_t count, double sample_rate)
      : is_long(static_cast<double>(count) >= sample_rate),
        per_sample((is_long ? 1 : 1000) / sample_rate),
        stride(std::max<std::size_t>(1, count / kPoints)),
        samples(count) {}

  bool is_long;
  double per_sample;
  std::size_t stride, samples;
};

// `gain` is one per sample.
std::vector<Point> points(const std::vector<double>& gain, const TimeScale& scale) {
  std::vector<Point> result;
  for (std::size_t i = 0; i < scale.samples; i += scale.stride) {
    result.push_back({static_cast<double>(i) * scale.per_sample, gain[i]});
  }
  return result;
}

Axis gain_axis(const std::vector<Series>& lines) {
  double least = 0, greatest = 0;
  for (const Series& line : lines) {
    for (const Point& point : line.points) {
      least = std::min(least, point.y);
      greatest = std::max(greatest, point.y);
    }
  }
  return {"gain, dB", std::min(-3.0, 3 * std::floor(least / 3)),
          std::max(3.0, 3 * std::ceil((greatest + 0.5) / 3)), Scale::kDecibels};
}

struct Labels {
  std::string title, jump, compressor, expander;
};

Chart chart(const StripCurves& curves, const GainCourse& course, const Labels& labels) {
  const TimeScale scale(settling(course), curves.sample_rate);
  const bool compressor = curves.settings.compressor.has_value();
  const bool expander = curves.settings.expander.has_value();
  const bool makeup = curves.dynamics.makeupGain != 1;
  std::vector<Series> lines;
  if (compressor) lines.push_back({labels.compressor, "s1", points(course.compressor, scale)});
  if (expander) lines.push_back({labels.expander, "s2", points(course.expander, scale)});
  if (makeup || (compressor && expander)) {
    lines.push_back({makeup ? "all, with makeup" : "both", "main", points(course.total, scale)});
  }
  const Axis y = gain_axis(lines);
  return {.title = labels.title,
          .description = fmt::format("Gain over time after the level jumps {}: {} {}", labels.jump,
                                     labels.compressor, labels.expander),
          .x = {fmt::format("{} after the level jumps {}", scale.is_long ? "s" : "ms", labels.jump),
                0, static_cast<double>(scale.samples - 1) * scale.per_sample},
          .y = y,
          .series = std::move(lines)};
}

}  // namespace

std::vector<Chart> burst_charts(const StripCurves& curves) {
  const Burst& burst = *curves.burst;
  Labels rise{.title = "Dynamics: attack",
              .jump = fmt::format("from {:.0f} to {:.0f} dBFS", burst.quiet, burst.loud),
              .compressor = {},
              .expander = {}};
  Labels fall{.title = "Dynamics: hold and release",
              .jump = fmt::format("back to {:.0f} dBFS", burst.quiet),
              .compressor = {},
              .expander = {}};
  if (const auto& set = curves.settings.compressor) {
    rise.compressor = fmt::format("compressor, attack {} ms", set->attack);
    fall.compressor = fmt::format("compressor, release {} ms", set->release);
  }
  if (const auto& set = curves.settings.expander) {
    rise.expander = fmt::format("expander, attack {} ms", set->attack);
    fall.expander = fmt::format("expander, hold {} ms, release {} ms", set->hold, set->release);
  }
  return {chart(curves, burst.rise, rise), chart(curves, burst.fall, fall)};
}

}  // namespace channelstrip::host
