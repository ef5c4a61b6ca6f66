// A chart's legend: the names of its series, each beside a piece of its line.

#pragma once

#include <string>
#include <vector>

#include "chart.h"

namespace channelstrip::host {

inline constexpr double kLegendRow = 20;  // px high

struct Legend {
  std::string elements;
  int rows = 0;
};

// In as many rows as it takes from `left` to `right`, the first one's top edge at `top`.
Legend legend(const std::vector<Series>& series, double left, double right, double top);

}  // namespace channelstrip::host
