// What stands in a chart's plot, as SVG's elements.

#pragma once

#include <string>

#include "chart.h"
#include "plot.h"

namespace channelstrip::host {

// The grid, the frame, the values that the axes name and the axes' labels.
std::string draw_axes(const Chart& chart, const Plot& plot);

// The line or the area, cut at the plot's edges; nothing where all of it is beyond them. Throws
// std::invalid_argument for a `lower` of another length than the points.
std::string draw_series(const Series& series, const Plot& plot);

// The marks within the plot, their names where the series leave most room and none covers another;
// where there is no such place a mark has no name.
std::string draw_marks(const Chart& chart, const Plot& plot);

}  // namespace channelstrip::host
