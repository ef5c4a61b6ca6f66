// The gain computer's coefficients and state in lanes, one per link group: loaded from the records
// at the beginning of a call, stored at its end.

#pragma once

#include "group.h"
#include "link_lanes.h"

namespace channelstrip {

// A field of Dyn_SCoefsBlock, in every lane that of the lane's strip.
template <typename V, typename Layout>
CHANNELSTRIP_INLINE V coefs_of_lanes(const SChannelStrip_Alg_Context* const* strips,
                                     float Dyn_SCoefsBlock::*field) {
  if constexpr (Layout::kStrips == 1) return broadcast<V>(strips[0]->dynCoefs->*field);
  return fill<V>(
      [&](int lane) { return strips[Layout::strip_of_group_lane(lane)]->dynCoefs->*field; });
}

template <typename Layout, typename V>
CHANNELSTRIP_INLINE void load_curve_coefs(CurveCoefs<V>& coefs,
                                          const SChannelStrip_Alg_Context* const* strips) {
  const auto number = [&](float Dyn_SCoefsBlock::*field) {
    return coefs_of_lanes<V, Layout>(strips, field);
  };
  coefs.compSlope = number(&Dyn_SCoefsBlock::compSlope);
  coefs.compKneeA = number(&Dyn_SCoefsBlock::compKneeA);
  coefs.compKneeB = number(&Dyn_SCoefsBlock::compKneeB);
  coefs.compKneeC = number(&Dyn_SCoefsBlock::compKneeC);
  coefs.compThreshold = number(&Dyn_SCoefsBlock::compThreshold);
  coefs.compKneeHigh = number(&Dyn_SCoefsBlock::compKneeHigh);
  coefs.compKneeLow = number(&Dyn_SCoefsBlock::compKneeLow);
  coefs.expSlope = number(&Dyn_SCoefsBlock::expSlope);
  coefs.expKneeA = number(&Dyn_SCoefsBlock::expKneeA);
  coefs.expKneeB = number(&Dyn_SCoefsBlock::expKneeB);
  coefs.expKneeC = number(&Dyn_SCoefsBlock::expKneeC);
  coefs.expThreshold = number(&Dyn_SCoefsBlock::expThreshold);
  coefs.expKneeHigh = number(&Dyn_SCoefsBlock::expKneeHigh);
  coefs.expKneeLow = number(&Dyn_SCoefsBlock::expKneeLow);
}

template <typename Layout>
CHANNELSTRIP_INLINE void load_group_coefs(GroupCoefs<typename Layout::Group>& coefs,
                                          const SChannelStrip_Alg_Context* const* strips) {
  using V = typename Layout::Group;
  const auto of_lane = [&](int lane) -> const Dyn_SCoefsBlock& {
    return *strips[Layout::strip_of_group_lane(lane)]->dynCoefs;
  };
  const auto number = [&](float Dyn_SCoefsBlock::*field) {
    return coefs_of_lanes<V, Layout>(strips, field);
  };
  coefs.compRange = number(&Dyn_SCoefsBlock::compRange);
  coefs.makeupGain = number(&Dyn_SCoefsBlock::makeupGain);
  coefs.compAttack = number(&Dyn_SCoefsBlock::compAttack);
  coefs.compRelease = number(&Dyn_SCoefsBlock::compRelease);
  coefs.gateOpenThreshold = number(&Dyn_SCoefsBlock::gateOpenThreshold);
  coefs.gateCloseThreshold = number(&Dyn_SCoefsBlock::gateCloseThreshold);
  coefs.expRange = number(&Dyn_SCoefsBlock::expRange);
  coefs.expAttack = number(&Dyn_SCoefsBlock::expAttack);
  coefs.expRelease = number(&Dyn_SCoefsBlock::expRelease);
  coefs.peakDecay = number(&Dyn_SCoefsBlock::peakDecay);
  for (int i = 0; i < 5; ++i) {
    coefs.detectorFilter[i] = fill<V>([&](int lane) { return of_lane(lane).detectorFilter[i]; });
  }
  coefs.hold = fill<WordsOf<V>>([&](int lane) { return hold_samples(of_lane(lane)); });
  coefs.smoothed = fill_mask<V>([&](int lane) { return detects_smoothed(of_lane(lane)); });
}

// Each group's state from its leader's record; a group that no channel uses takes record 0.
template <typename Layout>
CHANNELSTRIP_INLINE void load_group_states(GroupState<typename Layout::Group>& state,
                                           const SChannelStrip_Alg_Context* const* strips,
                                           const LinkLanes<Layout>& links) {
  using V = typename Layout::Group;
  const auto of_lane = [&](int lane) -> const Dyn_SState& {
    const int leader = links.leader(lane);
    return strips[Layout::strip_of_group_lane(lane)]->dynState[leader < 0 ? 0 : leader];
  };
  const auto number = [&](float Dyn_SState::*field) {
    return fill<V>([&](int lane) { return of_lane(lane).*field; });
  };
  state.compGain = number(&Dyn_SState::compGain);
  state.expGain = number(&Dyn_SState::expGain);
  state.detZ1 = number(&Dyn_SState::detZ1);
  state.detZ2 = number(&Dyn_SState::detZ2);
  state.peakLevel = number(&Dyn_SState::peakLevel);
  state.smoothLevel = V{};  // only written
  state.curMakeupGain = number(&Dyn_SState::curMakeupGain);
  state.curCompRange = number(&Dyn_SState::curCompRange);
  state.curExpRange = number(&Dyn_SState::curExpRange);
  state.open = fill_mask<V>([&](int lane) { return of_lane(lane).gateOpen > 0; });
  state.hold =
      fill<WordsOf<V>>([&](int lane) { return static_cast<uint32_t>(of_lane(lane).holdCount); });
}

template <typename Layout>
CHANNELSTRIP_INLINE void store_group_states(const SChannelStrip_Alg_Context* const* strips,
                                            const LinkLanes<Layout>& links,
                                            const GroupState<typename Layout::Group>& state) {
  for (int lane = 0; lane < kWidth<typename Layout::Group>; ++lane) {
    const int leader = links.leader(lane);
    if (leader < 0) continue;
    const GroupState<float> of_lane = {
        lane_of(state.compGain, lane),      lane_of(state.expGain, lane),
        lane_of(state.detZ1, lane),         lane_of(state.detZ2, lane),
        lane_of(state.peakLevel, lane),     lane_of(state.smoothLevel, lane),
        lane_of(state.curMakeupGain, lane), lane_of(state.curCompRange, lane),
        lane_of(state.curExpRange, lane),   lane_of(state.open, lane) != 0,
        lane_of(state.hold, lane)};
    store_group_state(strips[Layout::strip_of_group_lane(lane)]->dynState[leader], of_lane);
  }
}

}  // namespace channelstrip
