#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>

#include "plot_elements.h"
#include "svg_element.h"

namespace channelstrip::host {
namespace {

constexpr double kUpright = 20;  // px, of text that runs upwards

std::string line_between(const Point& a, const Point& b) {
  return path("mark", line_through(std::array{a, b}));
}

// Of the line at `x`; NaN beside its ends.
double value_at(const Series& series, double x) {
  const auto after = std::ranges::lower_bound(series.points, x, {}, &Point::x);
  if (after == series.points.end()) return std::numeric_limits<double>::quiet_NaN();
  if (after->x == x) return after->y;
  if (after == series.points.begin()) return std::numeric_limits<double>::quiet_NaN();
  const Point& before = *std::prev(after);
  return std::lerp(before.y, after->y, (x - before.x) / (after->x - before.x));
}

// Whether the series leave more room above them than below, at a value of x.
bool room_at_top(const Chart& chart, const Plot& plot, double value) {
  const Rectangle& area = plot.area();
  double highest = area.bottom, lowest = area.top;
  for (const Series& series : chart.series) {
    const double level = value_at(series, value);
    if (!std::isfinite(level)) continue;
    const double height = std::clamp(plot.y(level), area.top, area.bottom);
    highest = std::min(highest, height);
    lowest = std::max(lowest, height);
  }
  return highest - area.top >= area.bottom - lowest;
}

std::string level(const Mark& mark, const Plot& plot) {
  const Rectangle& area = plot.area();
  const double at = plot.y(mark.at);
  if (!(area.top <= at && at <= area.bottom)) return "";
  const bool room_above = at - area.top > kUpright;
  return line_between({area.left, at}, {area.right, at}) +
         text(area.right - 6, at + (room_above ? -5 : 16), Anchor::kEnd, mark.label,
              " class=\"halo\"");
}

// Its name runs upwards, left of it unless that is where the mark before it stands, and at the end
// where the lines leave more room.
std::string upright(const Mark& mark, const Plot& plot, std::optional<double> previous,
                    bool at_top) {
  const Rectangle& area = plot.area();
  const double at = plot.x(mark.at);
  const bool taken = previous && at >= *previous && at - *previous < kUpright;
  const double baseline = at - area.left > kUpright && !taken ? at - 5 : at + 15;
  return line_between({at, area.top}, {at, area.bottom}) +
         text(0, 0, at_top ? Anchor::kEnd : Anchor::kStart, mark.label,
              fmt::format(" class=\"halo\" transform=\"translate({} {}) rotate(-90)\"",
                          coordinate(baseline),
                          coordinate(at_top ? area.top + 6 : area.bottom - 6)));
}

}  // namespace

std::string draw_marks(const Chart& chart, const Plot& plot) {
  std::string elements;
  std::optional<double> previous;  // px
  for (const Mark& mark : chart.marks) {
    if (mark.axis == Mark::Axis::kY) {
      elements += level(mark, plot);
    } else if (const double at = plot.x(mark.at);
               plot.area().left <= at && at <= plot.area().right) {
      elements += upright(mark, plot, previous, room_at_top(chart, plot, mark.at));
      previous = at;
    }
  }
  return elements;
}

}  // namespace channelstrip::host
