// How far the figures of the turns lie apart.

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace channelstrip::bench {

// The median and the quartiles: half of the turns lie between `low` and `high`.
struct Spread {
  double low, median, high;
};

inline Spread spread(std::vector<double> values) {
  std::ranges::sort(values);
  const auto at = [&](std::size_t quarter) { return values[quarter * (values.size() - 1) / 4]; };
  return {at(1), at(2), at(3)};
}

}  // namespace channelstrip::bench
