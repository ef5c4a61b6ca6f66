#include "clip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace channelstrip::host {
namespace {

using Line = std::pair<Point, Point>;

bool is_finite(const Point& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

// Y.-D. Liang, B. Barsky, "A New Concept and Method for Line Clipping", ACM Trans. Graphics 3(1),
// 1984: of the line a + t (b - a) the part from `enter` to `leave` is inside all four edges.
std::optional<Line> clip_line(const Point& a, const Point& b, const Rectangle& inside) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const std::array steps{-dx, dx, -dy, dy};
  const std::array distances{a.x - inside.left, inside.right - a.x, a.y - inside.top,
                             inside.bottom - a.y};
  double enter = 0, leave = 1;
  for (std::size_t edge = 0; edge < steps.size(); ++edge) {
    if (steps[edge] == 0) {
      if (distances[edge] < 0) return std::nullopt;
      continue;
    }
    const double t = distances[edge] / steps[edge];
    if (steps[edge] < 0) {
      enter = std::max(enter, t);
    } else {
      leave = std::min(leave, t);
    }
  }
  if (enter > leave) return std::nullopt;
  const auto at = [&](double t) { return Point{a.x + t * dx, a.y + t * dy}; };
  return Line{enter == 0 ? a : at(enter), leave == 1 ? b : at(leave)};
}

}  // namespace

std::vector<std::vector<Point>> clip(std::span<const Point> points, const Rectangle& rectangle) {
  std::vector<std::vector<Point>> parts;
  bool joined = false;  // the last part ends at points[i - 1]
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Point &a = points[i - 1], &b = points[i];
    const auto line =
        is_finite(a) && is_finite(b) ? clip_line(a, b, rectangle) : std::optional<Line>{};
    if (line) {
      if (!joined) parts.push_back({line->first});
      parts.back().push_back(line->second);
    }
    joined = line && line->second.x == b.x && line->second.y == b.y;
  }
  return parts;
}

}  // namespace channelstrip::host
