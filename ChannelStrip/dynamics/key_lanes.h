// Detection signals in lanes, one per channel, for the length of a call: the channel's own audio or
// the key, through the channel's key filter.

#pragma once

#include "../frame/context.h"
#include "../lanes/buffers.h"
#include "../lanes/layout.h"
#include "../lanes/records.h"
#include "../lanes/section.h"

namespace channelstrip {

template <typename Layout>
class KeyLanes {
 public:
  using V = typename Layout::Channel;

  CHANNELSTRIP_INLINE explicit KeyLanes(const SChannelStrip_Alg_Context* const* strips) {
    const auto strip = [&](int lane) -> const SChannelStrip_Alg_Context& {
      return *strips[Layout::strip_of_channel_lane(lane)];
    };
    V switches[4], filter[4], memory[4];
    load_switches<Layout>(switches, strips);
    const auto enabled = (IntsOf<V>)switches[0] == 1;
    const auto index =
        fill<IntsOf<V>>([&](int lane) { return *strip(lane).keyInputIndex; }) & enabled;
    keyed_ = index != 0;
    any_keyed_ = any_bit(keyed_);
    for (int lane = 0; lane < kWidth<V>; ++lane) keys_[lane] = strip(lane).inputs[index[lane]];

    const auto load_filter = [&](int first) {
      load_coefs<Layout>(
          filter, strips, [](int lane) { return Layout::strip_of_channel_lane(lane); },
          CHANNELSTRIP_WORD_OF(Dyn_SCoefsBlock, keyFilter) + first);
      for (int i = 0; i < 4; ++i) filter_[first + i] = filter[i];
    };
    load_filter(0);
    load_filter(1);
    load_columns(memory, [&](int lane) {
      return word_at(strip(lane).dynState[Layout::channel_of(lane)],
                     CHANNELSTRIP_WORD_OF(Dyn_SState, keyZ1));
    });
    z1_ = memory[0];
    z2_ = memory[1];
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
    float* records[kWidth<V>];
    for (int lane = 0; lane < kWidth<V>; ++lane) {
      Dyn_SState* const states = strips[Layout::strip_of_channel_lane(lane)]->dynState;
      records[lane] =
          Layout::is_channel(lane) ? word_at(states[Layout::channel_of(lane)], 0) : nullptr;
    }
    store_columns<2>({z1_, z2_, V{}, V{}}, records, CHANNELSTRIP_WORD_OF(Dyn_SState, keyZ1));
  }

 private:
  const float* keys_[kWidth<V>];
  bool any_keyed_ = false;
  MaskOf<V> keyed_;
  V filter_[5], z1_, z2_;
};

}  // namespace channelstrip
