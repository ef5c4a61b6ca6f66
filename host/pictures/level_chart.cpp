// What the dynamics make of a steady level.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "control/design/dynamics.h"
#include "strip_curves.h"

namespace channelstrip::host {
namespace {

// Every quarter of a decibel, the ends of the knees and both sides of a gate's jump.
std::vector<Point> output_levels(const StripCurves& curves, const Axis& x, double opens) {
  const Dyn_SCoefsBlock& dynamics = curves.dynamics;
  std::vector<double> levels;
  const auto steps = std::lround(4 * (x.high - x.low));
  for (long n = 0; n <= steps; ++n) levels.push_back(x.low + static_cast<double>(n) / 4);
  for (const float edge :
       {dynamics.compKneeLow, dynamics.compKneeHigh, dynamics.expKneeLow, dynamics.expKneeHigh}) {
    levels.push_back(static_cast<double>(edge));
  }
  std::erase_if(levels, [&](double level) { return level < x.low || level > x.high; });
  std::ranges::sort(levels);

  std::vector<Point> points;
  const auto add = [&](double level, bool open) {
    const StaticGain gain = static_gain(curves.settings, level, open);
    points.push_back({level, level + gain.compressor + gain.expander + curves.makeup()});
  };
  bool open = false;
  for (const double level : levels) {
    if (!open && level >= opens) {
      if (opens > x.low) add(opens, false);
      open = true;
      add(std::max(opens, x.low), true);
    }
    add(level, open);
  }
  return points;
}

std::string named(const char* name, double level) {
  return fmt::format("{} {:g} dB", name, level);
}

std::vector<Mark> thresholds(const StripCurves& curves) {
  std::vector<Mark> marks;
  if (curves.has_gate()) {
    const auto open = static_cast<double>(curves.dynamics.gateOpenThreshold);
    const auto close = static_cast<double>(curves.dynamics.gateCloseThreshold);
    marks.push_back({.at = close, .label = named("gate shuts", close)});
    marks.push_back({.at = open, .label = named("gate opens", open)});
  } else if (curves.settings.expander) {
    const double threshold = curves.settings.expander->threshold;
    marks.push_back({.at = threshold, .label = named("expander", threshold)});
  }
  if (curves.settings.compressor) {
    const double threshold = curves.settings.compressor->threshold;
    marks.push_back({.at = threshold, .label = named("compressor", threshold)});
  }
  std::ranges::sort(marks, {}, &Mark::at);
  return marks;
}

std::string description(const StripCurves& curves) {
  std::string text = "Output level over input level";
  if (const auto& compressor = curves.settings.compressor) {
    text += fmt::format("; compressor from {} dB, ratio {}, knee {} dB", compressor->threshold,
                        compressor->ratio, compressor->knee);
  }
  if (const auto& expander = curves.settings.expander) {
    text += fmt::format("; expander below {} dB, ratio {}, knee {} dB, down to {} dB",
                        expander->threshold, expander->ratio, expander->knee, expander->range);
  }
  return text;
}

}  // namespace

Chart level_chart(const StripCurves& curves) {
  const Axis x{"input level, dBFS", std::min(-60.0, 12 * std::floor(curves.burst->quiet / 12)),
               std::max(0.0, 12 * std::ceil(curves.burst->loud / 12)), Scale::kDecibels};
  std::vector<Series> series{{"unchanged", "guide", {{x.low, x.low}, {x.high, x.high}}}};
  if (curves.has_gate()) {
    series.push_back(
        {"level falling", "main",
         output_levels(curves, x, static_cast<double>(curves.dynamics.gateCloseThreshold))});
    series.push_back(
        {"level rising", "main dashed",
         output_levels(curves, x, static_cast<double>(curves.dynamics.gateOpenThreshold))});
  } else {
    series.push_back({"output", "main", output_levels(curves, x, x.low)});
  }
  double least = x.low, greatest = x.high;
  for (const Series& line : series) {
    for (const Point& point : line.points) {
      least = std::min(least, point.y);
      greatest = std::max(greatest, point.y);
    }
  }
  return {.title = "Dynamics: level",
          .description = description(curves),
          .x = x,
          .y = {"output level, dBFS", 12 * std::floor(std::max(least, x.low - 36) / 12),
                6 * std::ceil(greatest / 6), Scale::kDecibels},
          .series = std::move(series),
          .marks = thresholds(curves)};
}

}  // namespace channelstrip::host
