// What of two runs of one scene must be equal, and what may differ by how much.

#pragma once

#include <span>
#include <string>

#include "scene.h"

namespace channelstrip::test {

// The first word of `actual` that has in none of `legal` the same bits (any NaN is any other's
// equal); empty: there is none. Words that nobody should touch are among them.
std::string first_difference(std::span<const Scene> legal, const Scene& actual);

// The first number of `actual` that lies further from the first of `legal` than
//
//   kSpreads x spread + floor x max(peak, 1),
//
// spread being the largest distance between any two of `legal`, peak the largest magnitude, that
// the instance's numbers of the same quantity (signal, dB, gain) have; empty: there is none. Words
// that don't depend on a filter's last bits must be equal.
std::string first_excess(std::span<const Scene> legal, const Scene& actual, double floor);

// The same, and the largest distance of all in units of its bound; infinite where bits should be
// equal and aren't.
struct Deviation {
  std::string first_excess;
  double largest = 0.0;
};

Deviation deviation(std::span<const Scene> legal, const Scene& actual, double floor);

// Everything to the bit, NaNs too, and much quicker than the others.
bool same_words(const Scene& a, const Scene& b);

}  // namespace channelstrip::test
