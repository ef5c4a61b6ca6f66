// Compares two runs of one scene: which words must be equal, and by how much the others may differ.

#pragma once

#include <span>
#include <string>

#include "scene.h"

namespace channelstrip::test {

// Describes the first word of `actual` whose bits none of `legal` has; empty if there is none. All
// NaNs count as equal. Words that nobody should touch are compared too.
std::string first_difference(std::span<const Scene> legal, const Scene& actual);

// Describes the first number of `actual` that differs from that of legal[0] by more than
//
//   kSpreads x spread + floor x max(peak, 1);
//
// empty if there is none. Both are taken over the instance's numbers of the same quantity (signal,
// dB, gain): spread is the largest distance between two of `legal`, peak the largest magnitude.
// Words that don't depend on a filter's last bits must be equal.
std::string first_excess(std::span<const Scene> legal, const Scene& actual, double floor);

// The same with the largest distance, in units of its bound; infinite where bits should be equal
// and aren't.
struct Deviation {
  std::string first_excess;
  double largest = 0.0;
};

Deviation deviation(std::span<const Scene> legal, const Scene& actual, double floor);

// Whether everything is equal to the bit, NaNs included. Much quicker than the other comparisons.
bool same_words(const Scene& a, const Scene& b);

}  // namespace channelstrip::test
