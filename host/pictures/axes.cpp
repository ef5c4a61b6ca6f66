#include <fmt/format.h>

#include "plot.h"
#include "svg_element.h"
#include "ticks.h"

namespace channelstrip::host {
namespace {

// Between the values that an axis names, at least, in px.
constexpr double kTickWidth = 48, kTickHeight = 26;
constexpr double kFrequencyWidth = 32;  // of a logarithmic axis

}  // namespace

std::string draw_axes(const Chart& chart, const Plot& plot) {
  std::string grid, labels;
  const auto [left, top, right, bottom] = plot.area();
  const double tick_width = chart.x.scale == Scale::kLogarithmic ? kFrequencyWidth : kTickWidth;
  for (const Tick& tick : ticks(chart.x, static_cast<int>((right - left) / tick_width))) {
    const double x = plot.x(tick.value);
    grid += fmt::format("M{} {}V{}", coordinate(x), coordinate(top), coordinate(bottom));
    labels += text(x, bottom + 18, Anchor::kMiddle, tick.text);
  }
  for (const Tick& tick : ticks(chart.y, static_cast<int>((bottom - top) / kTickHeight))) {
    const double y = plot.y(tick.value);
    grid += fmt::format("M{} {}H{}", coordinate(left), coordinate(y), coordinate(right));
    labels += text(left - 6, y + 5, Anchor::kEnd, tick.text);
  }
  std::string elements = grid.empty() ? "" : path("grid", grid);
  elements += path("frame", fmt::format("M{} {}H{}V{}H{}Z", coordinate(left), coordinate(top),
                                        coordinate(right), coordinate(bottom), coordinate(left)));
  elements += labels;
  if (!chart.x.label.empty()) {
    elements += text((left + right) / 2, bottom + 38, Anchor::kMiddle, chart.x.label);
  }
  if (!chart.y.label.empty()) elements += text(8, top - 12, Anchor::kStart, chart.y.label);
  return elements;
}

}  // namespace channelstrip::host
