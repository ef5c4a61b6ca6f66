// How often levels stood on, or next to, what they are compared with.

#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "strip_state.h"

namespace channelstrip::test {

enum class Edge {
  kCompKneeLow,
  kCompKneeHigh,
  kExpKneeLow,
  kExpKneeHigh,
  kGateOpen,
  kGateClose,
  kFullScale,     // the level 1, 0 dB
  kSilenceFloor,  // -140 dB, where silence is put
};

enum class Side { kBelow, kAt, kAbove };  // below and above: by one float

inline constexpr std::size_t kEdgeCount = 8, kSideCount = 3;

// An edge counts only where the sample's way through the curves really compares with it.
class EdgeCounts : public model::LevelWatch {
 public:
  void see(double level, double db, bool gate_was_open, const Dyn_SCoefsBlock& c) override;

  // Of the most seldom case.
  uint64_t least() const;

  // The cases that were never met, by name; empty: none.
  std::string missing() const;

 private:
  void note(Edge edge, float value, float threshold);

  std::array<std::array<uint64_t, kSideCount>, kEdgeCount> counts_{};
};

}  // namespace channelstrip::test
