// Every word of a scene by name.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "scene.h"

namespace channelstrip::test {

// What a number measures; numbers of one quantity and instance have errors of one size.
enum class Quantity {
  kFixed,    // doesn't depend on a filter's last bits
  kSignal,   // audio, levels, and what filters remember
  kDecibel,  // gain terms
  kGain,     // gain readouts
  kChosen,   // the level at which a maximum was met: of two near maxima, either's
};

struct Value {
  std::string_view field;
  Quantity quantity;
  std::size_t instance, index;
  double number;
  uint64_t bits;
};

// In an order that depends on the scene's layout alone.
std::vector<Value> values_of(const Scene& scene);

}  // namespace channelstrip::test
