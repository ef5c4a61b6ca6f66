// Every word of a scene, with its name.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "scene.h"

namespace channelstrip::test {

// What a number measures. Within an instance, numbers of one quantity have errors of one size.
enum class Quantity {
  kFixed,    // doesn't depend on a filter's last bits
  kSignal,   // audio, levels and filter memory
  kDecibel,  // gain terms
  kGain,     // gain readouts
  kChosen,   // the level beside the greatest gain: with two nearly equal gains, either's
};

struct Value {
  std::string_view field;
  Quantity quantity;
  std::size_t instance, index;
  double number;
  uint64_t bits;
};

// The order depends only on the scene's layout.
std::vector<Value> values_of(const Scene& scene);

}  // namespace channelstrip::test
