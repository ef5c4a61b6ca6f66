// Where a chart's values lie on paper.

#pragma once

#include "chart.h"
#include "clip.h"

namespace channelstrip::host {

class Plot {
 public:
  // Throws std::invalid_argument for an axis without extent.
  Plot(const Axis& x, const Axis& y, const Rectangle& area);

  const Rectangle& area() const { return area_; }  // px

  // In px; of a value beyond its axis, beyond the area.
  double x(double value) const;
  double y(double value) const;
  Point place(const Point& values) const { return {x(values.x), y(values.y)}; }

  // The point of the area that is nearest to a place.
  Point nearest(const Point& place) const;

 private:
  Axis x_, y_;
  Rectangle area_;
};

}  // namespace channelstrip::host
