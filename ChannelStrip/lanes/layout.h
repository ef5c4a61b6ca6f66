// Which lane holds which channel or link group.
//
// `Strips` instances of one stem format are processed side by side. Each takes a power of two of
// lanes for its channels, and another power of two for its link groups. Spare channel lanes repeat
// the strip's first channel; spare lanes are never stored.

#pragma once

#include "moves.h"

namespace channelstrip {

template <int Channels, int Groups, int Strips>
struct Layout {
  static constexpr int kChannels = Channels, kGroups = Groups, kStrips = Strips;
  static constexpr int kChannelStride = power_of_two_from(Channels);
  static constexpr int kGroupStride = power_of_two_from(Groups);
  static constexpr int kChannelLanes = Strips * kChannelStride > 4 ? Strips* kChannelStride : 4;
  static constexpr int kGroupLanes = Strips * kGroupStride > 4 ? Strips* kGroupStride : 4;
  // Floats from one sample's groups to the next sample's in Rows: a single strip's groups are
  // packed without gaps, those of several strips keep their lanes.
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

// A vector with value(lane) in every lane.
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

// A mask of the lanes for which holds(lane) is true.
template <typename V, typename Function>
CHANNELSTRIP_INLINE MaskOf<V> fill_mask(Function holds) {
  return fill<IntsOf<V>>([&](int lane) { return holds(lane) ? -1 : 0; });
}

}  // namespace channelstrip
