// The gain computer's coefficients and state in lanes, one per link group: loaded from the records
// at the beginning of a call, stored at its end.

#pragma once

#include "../lanes/layout.h"
#include "../lanes/records.h"
#include "group.h"
#include "link_lanes.h"

namespace channelstrip {

// Four words of a structure that begins like the record, at the same place as in the record.
template <typename V>
CHANNELSTRIP_INLINE void set_words(void* structure, int word, const V (&four)[4]) {
  for (int i = 0; i < 4; ++i) store(static_cast<V*>(structure) + word + i, four[i]);
}

// A section of Dyn_SCoefsBlock, in every lane that of the lane's strip.
template <typename Layout, template <typename> typename Section, typename V>
CHANNELSTRIP_INLINE void load_section(Section<V>& section,
                                      const SChannelStrip_Alg_Context* const* strips) {
  constexpr int kWords = sizeof(Section<V>) / sizeof(V);
  V* const words = reinterpret_cast<V*>(&section);
  for (int next = 0; next < kWords; next += 4) {
    const int word = kWords < 4 || next + 4 < kWords ? next : kWords - 4;
    V four[4];
    load_coefs<Layout>(
        four, strips, [](int lane) { return Layout::strip_of_group_lane(lane); },
        Section<V>::kFirst + word);
    for (int i = 0; i < 4 && word + i < kWords; ++i) store(words + word + i, four[i]);
  }
}

template <typename Layout, typename V>
CHANNELSTRIP_INLINE void load_curve_coefs(CurveCoefs<V>& coefs,
                                          const SChannelStrip_Alg_Context* const* strips) {
  load_section<Layout, CompressorCurve>(coefs, strips);
  load_section<Layout, ExpanderCurve>(coefs, strips);
  load_section<Layout, ExpanderKnee>(coefs, strips);
}

template <typename Layout>
CHANNELSTRIP_INLINE void load_group_coefs(GroupCoefs<typename Layout::Group>& coefs,
                                          const SChannelStrip_Alg_Context* const* strips) {
  using V = typename Layout::Group;
  load_section<Layout, CompressorMotion>(coefs, strips);
  load_section<Layout, GateThresholds>(coefs, strips);
  load_section<Layout, ExpanderMotion>(coefs, strips);
  load_section<Layout, Detector>(coefs, strips);
  coefs.hold = fill<WordsOf<V>>(
      [&](int lane) { return hold_samples(*strips[Layout::strip_of_group_lane(lane)]->dynCoefs); });
  V modes[4];
  load_coefs<Layout>(
      modes, strips, [](int lane) { return Layout::strip_of_group_lane(lane); },
      CHANNELSTRIP_WORD_OF(Dyn_SCoefsBlock, detectorMode));
  coefs.smoothed = (IntsOf<V>)modes[0] > 0;
}

// Each group's state from its leader's record; a group that no channel uses takes record 0.
template <typename Layout>
CHANNELSTRIP_INLINE void load_group_states(GroupState<typename Layout::Group>& state,
                                           const SChannelStrip_Alg_Context* const* strips,
                                           const LinkLanes<Layout>& links) {
  using V = typename Layout::Group;
  const Dyn_SState* records[kWidth<V>];
  for (int lane = 0; lane < kWidth<V>; ++lane) {
    const int leader = links.leader(lane);
    records[lane] = &strips[Layout::strip_of_group_lane(lane)]->dynState[leader < 0 ? 0 : leader];
  }
  V four[4];
  const auto load_four = [&](int word) {
    if constexpr (Layout::kStrips * Layout::kGroups == 1) {
      load_shared_columns(four, word_at(*records[0], word));
    } else {
      load_columns(four, [&](int lane) { return word_at(*records[lane], word); });
    }
  };
  constexpr int kFours[] = {0, CHANNELSTRIP_WORD_OF(Dyn_SState, detZ1),
                            CHANNELSTRIP_WORD_OF(Dyn_SState, smoothLevel)};
  for (const int word : kFours) {
    load_four(word);
    set_words(&state, word, four);
  }
  load_four(CHANNELSTRIP_WORD_OF(Dyn_SState, gateOpen));
  state.open = (IntsOf<V>)four[0] > 0;
  state.hold = (WordsOf<V>)four[1];
}

template <typename Layout>
CHANNELSTRIP_INLINE void store_group_states(const SChannelStrip_Alg_Context* const* strips,
                                            const LinkLanes<Layout>& links,
                                            const GroupState<typename Layout::Group>& state) {
  using V = typename Layout::Group;
  float* records[kWidth<V>];
  for (int lane = 0; lane < kWidth<V>; ++lane) {
    const int leader = links.leader(lane);
    Dyn_SState* const states = strips[Layout::strip_of_group_lane(lane)]->dynState;
    records[lane] = leader < 0 ? nullptr : word_at(states[leader], 0);
  }
  const V open = (V)(state.open & 1), hold = (V)state.hold;
  store_columns<2>({state.compGain, state.expGain, V{}, V{}}, records, 0);
  store_columns({state.detZ1, state.detZ2, state.peakLevel, state.smoothLevel}, records,
                CHANNELSTRIP_WORD_OF(Dyn_SState, detZ1));
  store_columns({state.curMakeupGain, state.curCompRange, state.curExpRange, open}, records,
                CHANNELSTRIP_WORD_OF(Dyn_SState, curMakeupGain));
  store_columns<1>({hold, V{}, V{}, V{}}, records, CHANNELSTRIP_WORD_OF(Dyn_SState, holdCount));
}

}  // namespace channelstrip
