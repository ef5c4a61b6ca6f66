// The values that an axis names.

#pragma once

#include <string>
#include <vector>

#include "chart.h"

namespace channelstrip::host {

struct Tick {
  double value;
  std::string text;
};

// In rising order within the axis, round numbers of its scale, at most `most`; a logarithmic axis
// has 1, 2 and 5 of every decade or, where those are too many, every nth power of ten.
std::vector<Tick> ticks(const Axis& axis, int most);

// 20, 1.5k, 10k, U+2212 for a minus; at most three digits behind the point.
std::string engineers_number(double value);

}  // namespace channelstrip::host
