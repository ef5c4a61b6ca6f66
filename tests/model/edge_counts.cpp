#include "edge_counts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace channelstrip::test {
namespace {

constexpr const char* kEdgeNames[kEdgeCount] = {
    "compKneeLow",       "compKneeHigh",       "expKneeLow", "expKneeHigh",
    "gateOpenThreshold", "gateCloseThreshold", "0 dB",       "-140 dB"};
constexpr const char* kSideNames[kSideCount] = {"below", "at", "above"};

}  // namespace

void EdgeCounts::see(double level, double db, bool gate_was_open, const Dyn_SCoefsBlock& c) {
  const auto x = static_cast<float>(db);
  note(Edge::kCompKneeHigh, x, c.compKneeHigh);
  if (!(x > c.compKneeHigh)) note(Edge::kCompKneeLow, x, c.compKneeLow);
  note(Edge::kExpKneeLow, x, c.expKneeLow);
  if (!(x < c.expKneeLow)) note(Edge::kExpKneeHigh, x, c.expKneeHigh);
  if (gate_was_open) {
    note(Edge::kGateClose, x, c.gateCloseThreshold);
  } else {
    note(Edge::kGateOpen, x, c.gateOpenThreshold);
  }
  note(Edge::kFullScale, static_cast<float>(level), 1.0F);
  note(Edge::kSilenceFloor, x, -140.0F);
}

void EdgeCounts::note(Edge edge, float value, float threshold) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  auto& counts = counts_[static_cast<std::size_t>(edge)];
  const auto count = [&](Side side) { ++counts[static_cast<std::size_t>(side)]; };
  if (value == threshold) {
    count(Side::kAt);
  } else if (std::fabs(value - threshold) < 1e-3F) {  // more than one float apart at these levels
    if (value == std::nextafter(threshold, -kInfinity)) count(Side::kBelow);
    if (value == std::nextafter(threshold, kInfinity)) count(Side::kAbove);
  }
}

uint64_t EdgeCounts::least() const {
  uint64_t least = std::numeric_limits<uint64_t>::max();
  for (const auto& sides : counts_) least = std::min(least, *std::ranges::min_element(sides));
  return least;
}

std::string EdgeCounts::missing() const {
  std::string names;
  for (std::size_t edge = 0; edge < kEdgeCount; ++edge) {
    for (std::size_t side = 0; side < kSideCount; ++side) {
      if (counts_[edge][side] > 0) continue;
      names += std::string(names.empty() ? "" : ", ") + kSideNames[side] + " " + kEdgeNames[edge];
    }
  }
  return names;
}

}  // namespace channelstrip::test
