// Lines cut at the edges of a plot.

#pragma once

#include <span>
#include <vector>

#include "chart.h"

namespace channelstrip::host {

struct Rectangle {
  double left, top, right, bottom;
};

// The parts of the line through `points` that lie in the rectangle, each of two points or more.
// Points that aren't finite break the line.
std::vector<std::vector<Point>> clip(std::span<const Point> points, const Rectangle& rectangle);

}  // namespace channelstrip::host
