#include "plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace channelstrip::host {
namespace {

void check(const Axis& axis) {
  const bool holds = std::isfinite(axis.low) && std::isfinite(axis.high) && axis.low < axis.high &&
                     (axis.scale != Scale::kLogarithmic || axis.low > 0);
  if (!holds) {
    throw std::invalid_argument(
        fmt::format("axis \"{}\" can't reach from {} to {}", axis.label, axis.low, axis.high));
  }
}

// 0 at the axis' low end, 1 at its high end.
double position(const Axis& axis, double value) {
  return axis.scale == Scale::kLogarithmic
             ? std::log(value / axis.low) / std::log(axis.high / axis.low)
             : (value - axis.low) / (axis.high - axis.low);
}

}  // namespace

Plot::Plot(const Axis& x, const Axis& y, const Rectangle& area) : x_(x), y_(y), area_(area) {
  check(x);
  check(y);
}

double Plot::x(double value) const {
  return area_.left + position(x_, value) * (area_.right - area_.left);
}

double Plot::y(double value) const {
  return area_.bottom - position(y_, value) * (area_.bottom - area_.top);
}

Point Plot::nearest(const Point& place) const {
  return {std::clamp(place.x, area_.left, area_.right),
          std::clamp(place.y, area_.top, area_.bottom)};
}

}  // namespace channelstrip::host
