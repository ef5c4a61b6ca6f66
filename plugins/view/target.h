// What lies under a point of the picture.

#pragma once

#include <cstddef>

namespace channelstrip::view {

enum class Part {
  kNone,
  kCell,       // index: of the layout's cells
  kHandle,     // index: of the band
  kEqualiser,  // the plot, beside the handles
  kThreshold,  // index: 0 the compressor's, 1 the expander's
  kMeters,     // a click clears holds and overs
  kUndo,
  kRedo
};

struct Target {
  Part part = Part::kNone;
  std::size_t index = 0;
  bool operator==(const Target&) const = default;
};

}  // namespace channelstrip::view
