// Which channel and which link group a lane is.
//
// Strips instances of one stem format stand side by side. Each takes a power of two of lanes for
// its channels, and one for its link groups; what is left over repeats the strip's first channel
// and is never stored.

#pragma once

#include "moves.h"

namespace channelstrip {

constexpr int power_of_two_from(int n) {
  return n <= 1 ? 1 : 2 * power_of_two_from((n + 1) / 2);
}

template <int Channels, int Groups, int Strips>
struct Layout {
  static constexpr int kChannels = Channels, kGroups = Groups, kStrips = Strips;
  static constexpr int kChannelStride = power_of_two_from(Channels);
  static constexpr int kGroupStride = power_of_two_from(Groups);
  static constexpr int kChannelLanes = Strips * kChannelStride > 4 ? Strips* kChannelStride : 4;
  static constexpr int kGroupLanes = Strips * kGroupStride > 4 ? Strips* kGroupStride : 4;
  // From one sample's groups to the next sample's, where no lane is wasted. The lanes of several
  // strips come round in whole registers.
  static constexpr int kStride = Strips == 1 ? Groups : kGroupLanes;

  using Channel = Lanes<kChannelLanes>;
  using Group = Lanes<kGroupLanes>;

  static constexpr int strip_of_channel_lane(int lane) { return lane / kChannelStride % Strips; }
  static constexpr int strip_of_group_lane(int lane) { return lane / kGroupStride % Strips; }
  static constexpr bool is_channel(int lane) {
    return lane < Strips * kChannelStride && lane % kChannelStride < Channels;
  }
  static constexpr int channel_of(int lane) { return is_channel(lane) ? lane % kChannelStride : 0; }
};

// Lanes filled by a function of their number.
template <typename V, typename Function>
CHANNELSTRIP_INLINE V fill(Function value) {
  using Element = decltype(value(0));
  constexpr int kCount = sizeof(V) / sizeof(Element);
  Element lanes[kCount];
  for (int lane = 0; lane < kCount; ++lane) lanes[lane] = value(lane);
  V filled;
  __builtin_memcpy(&filled, lanes, sizeof filled);
  return filled;
}

// A mask of what a function says of a lane's number.
template <typename V, typename Function>
CHANNELSTRIP_INLINE MaskOf<V> fill_mask(Function holds) {
  return fill<IntsOf<V>>([&](int lane) { return holds(lane) ? -1 : 0; });
}

}  // namespace channelstrip
