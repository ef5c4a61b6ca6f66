// Link groups in lanes: levels of channels become levels of groups, gains of groups become gains of
// channels.

#pragma once

#include "../frame/context.h"
#include "../lanes/layout.h"
#include "../lanes/records.h"

namespace channelstrip {

template <typename Layout>
class LinkLanes {
 public:
  using Channel = typename Layout::Channel;
  using Group = typename Layout::Group;

  CHANNELSTRIP_INLINE explicit LinkLanes(const SChannelStrip_Alg_Context* const* strips) {
    for (int lane = 0; lane < kWidth<Group>; ++lane) {
      leader_[lane] = -1;
      size_[lane] = 0;
    }
    for (int lane = 0; lane < kIndices; ++lane) {
      group_of_[lane] = 0;
      for (auto& round : member_) round[lane] = 0;
    }
    for (int lane = 0; lane < Layout::kStrips * Layout::kChannelStride; ++lane) {
      if (!Layout::is_channel(lane)) continue;
      const int strip = Layout::strip_of_channel_lane(lane);
      const int channel = Layout::channel_of(lane);
      const int group = strip * Layout::kGroupStride + strips[strip]->dynCoefs->linkGroup[channel];
      group_of_[lane] = group;
      if (leader_[group] < 0) {
        leader_[group] = channel;
        for (auto& round : member_) round[group] = lane;
      } else {
        member_[size_[group]][group] = lane;
      }
      ++size_[group];
      if (size_[group] > rounds_) rounds_ = size_[group];
    }
    Channel switches[4];
    load_switches<Layout>(switches, strips);
    listens_ = (IntsOf<Channel>)switches[1] != 0;
  }

  // The lowest channel of a group, or -1 if no channel uses it.
  CHANNELSTRIP_INLINE int leader(int group_lane) const {
    if (group_lane >= Layout::kStrips * Layout::kGroupStride) return -1;
    return Layout::kGroups == 1 ? 0 : leader_[group_lane];
  }
  CHANNELSTRIP_INLINE int group_lane(int channel_lane) const { return group_of_[channel_lane]; }

  // The greatest magnitude among the group's channels.
  CHANNELSTRIP_INLINE Group levels(Channel magnitudes) const {
    if constexpr (Layout::kChannels == 1) {
      return maximum(Group{}, magnitudes);
    } else if constexpr (Layout::kStrips * Layout::kGroups == 1) {
      static_assert(Layout::kChannels == 2);
      const Channel other = __builtin_shufflevector(magnitudes, magnitudes, 1, 0, 3, 2);
      return maximum(maximum(Group{}, magnitudes), other);
    } else {
      Group level = maximum(Group{}, pick_lanes<Group>(magnitudes, member_[0]));
      const int rounds = Layout::kGroups == 1 ? Layout::kChannels : rounds_;
      for (int round = 1; round < rounds; ++round) {
        level = maximum(level, pick_lanes<Group>(magnitudes, member_[round]));
      }
      return level;
    }
  }

  // A channel's audio times its group's gain, or its detection signal if keyListen is set.
  CHANNELSTRIP_INLINE Channel listen_or_gain(Channel detection, Channel audio, Group gain) const {
    Channel own_gain;
    if constexpr (Layout::kChannels == 1) {
      own_gain = gain;
    } else if constexpr (Layout::kStrips * Layout::kGroups == 1) {
      own_gain = broadcast<Channel>(gain[0]);
    } else {
      own_gain = pick_lanes<Channel>(gain, group_of_);
    }
    return select(listens_, detection, audio * own_gain);
  }

 private:
  static constexpr int kIndices = kWidth<Channel> > kWidth<Group> ? kWidth<Channel> : kWidth<Group>;
  using Indices = int32_t[kIndices];

  // By group lane: the channel lanes of the group's first, second, ... channel; where it has no
  // more channels, the first again.
  alignas(64) Indices member_[Layout::kChannels];
  alignas(64) Indices group_of_;  // by channel lane: the group lane
  int32_t leader_[kWidth<Group>];
  int32_t size_[kWidth<Group>];  // channels of each group
  int32_t rounds_ = 1;           // channels of the largest group
  MaskOf<Channel> listens_;
};

}  // namespace channelstrip
