// Detection signals in lanes, one per channel, for the length of a call: the channel's own audio or
// the key, through the channel's key filter.

#pragma once

#include "../frame/context.h"
#include "../lanes/buffers.h"
#include "../lanes/layout.h"
#include "../lanes/section.h"
#include "dyn_records.h"

namespace channelstrip {

template <typename Layout>
class KeyLanes {
 public:
  using V = typename Layout::Channel;

  CHANNELSTRIP_INLINE explicit KeyLanes(const SChannelStrip_Alg_Context* const* strips) {
    const auto strip = [&](int lane) -> const SChannelStrip_Alg_Context& {
      return *strips[Layout::strip_of_channel_lane(lane)];
    };
    const auto is_keyed = [&](int lane) {
      return *strip(lane).keyInputIndex != 0 && strip(lane).dynCoefs->keyEnable == 1;
    };
    for (int lane = 0; lane < kWidth<V>; ++lane) {
      any_keyed_ |= is_keyed(lane);
      keys_[lane] = strip(lane).inputs[is_keyed(lane) ? *strip(lane).keyInputIndex : 0];
    }
    keyed_ = fill_mask<V>(is_keyed);
    const auto state = [&](int lane) -> const Dyn_SState& {
      return strip(lane).dynState[Layout::channel_of(lane)];
    };
    z1_ = fill<V>([&](int lane) { return state(lane).keyZ1; });
    z2_ = fill<V>([&](int lane) { return state(lane).keyZ2; });
    for (int i = 0; i < 5; ++i) {
      filter_[i] = fill<V>([&](int lane) { return strip(lane).dynCoefs->keyFilter[i]; });
    }
  }

  CHANNELSTRIP_INLINE void detect(const V (&audio)[kQuad], int32_t offset, V (&detection)[kQuad]) {
    for (int k = 0; k < kQuad; ++k) detection[k] = audio[k];
    if (any_keyed_) {
      V key[kQuad];
      load_lanes(key, keys_, offset);
      for (int k = 0; k < kQuad; ++k) detection[k] = select(keyed_, key[k], audio[k]);
    }
    run_section<kQuad>(filter_, z1_, z2_, detection);
  }

  CHANNELSTRIP_INLINE void store(const SChannelStrip_Alg_Context* const* strips) const {
    for (int lane = 0; lane < kWidth<V>; ++lane) {
      if (!Layout::is_channel(lane)) continue;
      Dyn_SState& to =
          strips[Layout::strip_of_channel_lane(lane)]->dynState[Layout::channel_of(lane)];
      to.keyZ1 = z1_[lane];
      to.keyZ2 = z2_[lane];
    }
  }

 private:
  const float* keys_[kWidth<V>];
  bool any_keyed_ = false;
  MaskOf<V> keyed_;
  V filter_[5], z1_, z2_;
};

}  // namespace channelstrip
