#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

#include "plot.h"
#include "svg_element.h"
#include "xml.h"

namespace channelstrip::host {
namespace {

constexpr double kUpright = 20;  // px, of text that runs upwards

std::string line_between(const Point& a, const Point& b) {
  return path("mark", line_through(std::array{a, b}));
}

// The value of the line at `x`; NaN beyond its ends.
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

bool overlap(const Rectangle& a, const Rectangle& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The upright marks of a plot. Their names run upwards beside their lines, where they cover neither
// another name nor the previous mark; a name that has no such place is left out.
class Uprights {
 public:
  Uprights(const Chart& chart, const Plot& plot) : chart_(chart), plot_(plot) {}

  std::string draw(const Mark& mark) {
    const Rectangle& area = plot_.area();
    const double at = plot_.x(mark.at);
    if (!(area.left <= at && at <= area.right)) return "";
    const bool taken = at >= previous_ && at - previous_ < kUpright;
    previous_ = at;
    return line_between({at, area.top}, {at, area.bottom}) +
           name(mark, at, at - area.left > kUpright && !taken);
  }

 private:
  // At the end where the series leave more room if possible, on the left only if there is room.
  std::string name(const Mark& mark, double at, bool room_on_left) {
    const Rectangle& area = plot_.area();
    const double length = kCharacter * host::length(mark.label);
    const bool top_first = room_at_top(chart_, plot_, mark.at);
    for (const bool at_top : {top_first, !top_first}) {
      for (const bool left : {true, false}) {
        if (left && !room_on_left) continue;
        const double edge = left ? at - kUpright : at;
        const Rectangle place{edge, at_top ? area.top : area.bottom - length, edge + kUpright,
                              at_top ? area.top + length : area.bottom};
        const auto covered = [&](const Rectangle& other) { return overlap(place, other); };
        if (std::ranges::any_of(names_, covered)) continue;
        names_.push_back(place);
        return upright(mark.label, left ? at - 5 : at + 15, at_top);
      }
    }
    return "";
  }

  std::string upright(std::string_view label, double baseline, bool at_top) const {
    const Rectangle& area = plot_.area();
    return text(
        0, 0, at_top ? Anchor::kEnd : Anchor::kStart, label,
        fmt::format(" class=\"halo\" transform=\"translate({} {}) rotate(-90)\"",
                    coordinate(baseline), coordinate(at_top ? area.top + 6 : area.bottom - 6)));
  }

  const Chart& chart_;
  const Plot& plot_;
  double previous_ = -std::numeric_limits<double>::infinity();  // px, the mark before
  std::vector<Rectangle> names_;
};

}  // namespace

std::string draw_marks(const Chart& chart, const Plot& plot) {
  std::string elements;
  Uprights uprights(chart, plot);
  for (const Mark& mark : chart.marks) {
    elements += mark.axis == Mark::Axis::kY ? level(mark, plot) : uprights.draw(mark);
  }
  return elements;
}

}  // namespace channelstrip::host
