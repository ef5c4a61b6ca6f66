#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

#include "plot.h"
#include "svg_element.h"

namespace channelstrip::host {
namespace {

std::string line(const Series& series, const Plot& plot) {
  std::vector<Point> placed;
  std::ranges::transform(series.points, std::back_inserter(placed),
                         [&](const Point& point) { return plot.place(point); });
  std::string commands;
  for (const std::vector<Point>& part : clip(placed, plot.area())) commands += line_through(part);
  return commands;
}

// For each stretch without a gap a closed shape, along the upper line and back along the lower one.
std::string area(const Series& series, const Plot& plot) {
  std::string commands;
  std::vector<Point> upper, lower;
  const auto close = [&] {
    if (upper.empty()) return;
    upper.insert(upper.end(), lower.rbegin(), lower.rend());
    commands += line_through(upper) + 'Z';
    upper.clear();
    lower.clear();
  };
  for (std::size_t i = 0; i < series.points.size(); ++i) {
    const Point high = plot.place(series.points[i]);
    const Point low = plot.place({series.points[i].x, series.lower[i]});
    if (std::isfinite(high.x) && std::isfinite(high.y) && std::isfinite(low.y)) {
      upper.push_back(plot.nearest(high));
      lower.push_back(plot.nearest(low));
    } else {
      close();
    }
  }
  close();
  return commands;
}

}  // namespace

std::string draw_series(const Series& series, const Plot& plot) {
  const bool filled = !series.lower.empty();
  if (filled && series.lower.size() != series.points.size()) {
    throw std::invalid_argument(fmt::format("series \"{}\" has {} points and {} lower values",
                                            series.label, series.points.size(),
                                            series.lower.size()));
  }
  const std::string commands = filled ? area(series, plot) : line(series, plot);
  return commands.empty() ? "" : path(css_class(series), commands);
}

}  // namespace channelstrip::host
