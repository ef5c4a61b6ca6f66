// Counts how often levels lay on, or one float beside, the edges that they are compared with.

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
  kSilenceFloor,  // -140 dB, the level of silence
};

enum class Side { kBelow, kAt, kAbove };  // kBelow and kAbove: by one float

inline constexpr std::size_t kEdgeCount = 8, kSideCount = 3;

// An edge is counted only if evaluating the curves for this sample really compares with it.
class EdgeCounts : public model::LevelWatch {
 public:
  void see(double level, double db, bool gate_was_open, const Dyn_SCoefsBlock& c) override;

  // How often the rarest case was met.
  uint64_t least() const;

  // The names of the cases that were never met; empty if there are none.
  std::string missing() const;

 private:
  void note(Edge edge, float value, float threshold);

  std::array<std::array<uint64_t, kSideCount>, kEdgeCount> counts_{};
};

}  // namespace channelstrip::test
