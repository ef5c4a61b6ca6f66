// A chart's plot: where values lie on paper, and what stands there, as SVG's elements.

#pragma once

#include <string>

#include "chart.h"
#include "clip.h"

namespace channelstrip::host {

class Plot {
 public:
  // Throws std::invalid_argument for an axis without extent.
  Plot(const Axis& x, const Axis& y, const Rectangle& area);

  const Rectangle& area() const { return area_; }  // px

  // In px; values beyond their axis lie beyond the area.
  double x(double value) const;
  double y(double value) const;
  Point place(const Point& values) const { return {x(values.x), y(values.y)}; }

  // The point of the area nearest to `place`.
  Point nearest(const Point& place) const;

 private:
  Axis x_, y_;
  Rectangle area_;
};

// The grid, the frame, the values that the axes name and the axes' labels.
std::string draw_axes(const Chart& chart, const Plot& plot);

// The line or the area, cut at the plot's edges; nothing if all of it is beyond them. Throws
// std::invalid_argument for a `lower` of another length than the points.
std::string draw_series(const Series& series, const Plot& plot);

// The marks within the plot, their names where the series leave most room and none covers another;
// where there is no such place a mark has no name.
std::string draw_marks(const Chart& chart, const Plot& plot);

}  // namespace channelstrip::host
