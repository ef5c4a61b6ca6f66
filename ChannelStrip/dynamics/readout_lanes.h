// The dynamics readouts in lanes, for the length of a call: a lane per link group or, for a single
// strip of one or two groups, a lane per group and sample of the quad.
//
// All groups of an instance share the gain readout and the level beside it. In lanes each group
// keeps a maximum of its own; store takes the greatest of them, and of equal ones that which came
// first. While the shared gain is 0 it counts as empty, so that the order of the groups matters. If
// it starts at 0 or below, it is therefore updated in the scalar strip's order until it is
// positive.

#pragma once

#include "gain_computer.h"
#include "link_lanes.h"

namespace channelstrip {

template <typename Layout>
class ReadoutLanes {
 public:
  using Group = typename Layout::Group;
  using Quad = GainQuad<Group, Layout::kStride>;

  CHANNELSTRIP_INLINE ReadoutLanes(const SChannelStrip_Alg_Context* const* strips,
                                   const LinkLanes<Layout>& links)
      : links_(links) {
    for (int s = 0; s < Layout::kStrips; ++s) meters_[s] = *strips[s]->meterOutputs;
    channel_gain_ = fill<V>([&](int lane) {
      const int leader = links.leader(group_of(lane));
      return dyn_meters(lane)[CHANNELSTRIP_METER_CHANNEL_GAIN + (leader < 0 ? 0 : leader)];
    });
    least_comp_ = least_exp_ = broadcast<V>(__builtin_inff());
    now_ = fill<IntsOf<V>>([&](int lane) { return number_in_quad(lane); });
    start_shared();
  }

  CHANNELSTRIP_INLINE void update(const Quad& quad) {
    if (!shared_is_positive_) return update_in_order(quad);
    V gain = gain_, level = level_;
    IntsOf<V> since = since_;
    for (int k = 0; k < kRows; ++k) {
      const V now = quad.template gain<V>(k);
      const auto greater = now > gain;
      level = select(greater, quad.detected.template row<V>(k), level);
      since = select(greater, now_, since);
      gain = maximum(gain, now);
    }
    gain_ = gain;
    level_ = level;
    since_ = since;
    now_ += kNumbers;
    update_others(quad);
  }

  CHANNELSTRIP_INLINE void store() const {
    float gains[kWidth<V>], levels[kWidth<V>], own[kWidth<V>];
    float comp[kWidth<V>], exp[kWidth<V>];
    int32_t since[kWidth<V>];
    channelstrip::store(gains, gain_);
    channelstrip::store(levels, level_);
    channelstrip::store(own, channel_gain_);
    channelstrip::store(comp, least_comp_);
    channelstrip::store(exp, least_exp_);
    channelstrip::store(since, since_);
    for (int strip = 0; strip < Layout::kStrips; ++strip) {
      float* const meters = meters_[strip] + 2 * Layout::kChannels;
      int32_t first = kNever;
      for (int channel = 0; channel < Layout::kChannels; ++channel) {
        const int group = links_.group_lane(strip * Layout::kChannelStride + channel);
        float own_gain = own[group];
        for (int lane = group; lane < kWidth<V>; lane += kNextSample) {
          own_gain = maximum(own_gain, own[lane]);
          if (links_.leader(group) != channel) continue;
          float& comp_reduction = meters[CHANNELSTRIP_METER_COMP_REDUCTION];
          float& exp_reduction = meters[CHANNELSTRIP_METER_EXP_REDUCTION];
          comp_reduction = maximum(comp_reduction, 1.0f - comp[lane]);
          exp_reduction = maximum(exp_reduction, 1.0f - exp[lane]);
          float& gain = meters[CHANNELSTRIP_METER_GAIN];
          if (gains[lane] > gain || (gains[lane] == gain && since[lane] < first)) {
            gain = gains[lane];
            meters[CHANNELSTRIP_METER_LEVEL] = levels[lane];
            first = since[lane];
          }
        }
        meters[CHANNELSTRIP_METER_CHANNEL_GAIN + channel] = own_gain;
      }
    }
  }

 private:
  static constexpr int32_t kNever = INT32_MAX;
  // With one group or two, a single load takes all four samples of the quad.
  static constexpr bool kWhole = Layout::kStrips == 1 && Layout::kGroups <= 2;
  static constexpr int kNumbers =
      kWhole ? kQuad * Layout::kGroups : 1;  // that a load takes of a strip
  static constexpr int kRows = kWhole ? 1 : kQuad;
  using V = Lanes<(kWhole ? kNumbers : kWidth<Group>)>;
  static constexpr int kNextSample = kWhole ? Layout::kGroups : kWidth<V>;  // in lanes

  CHANNELSTRIP_INLINE static int group_of(int lane) {
    return kWhole ? lane % Layout::kGroups : lane;
  }

  // The scalar strip's order: group by group, that of the lowest leader first.
  CHANNELSTRIP_INLINE int number_in_quad(int lane) const {
    if (!kWhole) return 0;
    int before = 0;  // groups
    for (int group = 0; group < Layout::kGroups; ++group) {
      before += links_.leader(group) < links_.leader(group_of(lane));
    }
    return kQuad * before + lane / Layout::kGroups;
  }

  CHANNELSTRIP_INLINE float* dyn_meters(int lane) const {
    return meters_[Layout::strip_of_group_lane(lane)] + 2 * Layout::kChannels;
  }

  CHANNELSTRIP_INLINE void start_shared() {
    gain_ = fill<V>([&](int lane) { return dyn_meters(lane)[CHANNELSTRIP_METER_GAIN]; });
    level_ = fill<V>([&](int lane) { return dyn_meters(lane)[CHANNELSTRIP_METER_LEVEL]; });
    since_ = IntsOf<V>{} + kNever;
    shared_is_positive_ = !any_bit(gain_ <= V{});
  }

  CHANNELSTRIP_INLINE void update_others(const Quad& quad) {
    V gain = channel_gain_, comp = least_comp_, exp = least_exp_;
    for (int k = 0; k < kRows; ++k) {
      gain = maximum(gain, quad.template gain<V>(k));
      comp = minimum(comp, quad.template comp<V>(k));
      exp = minimum(exp, quad.template exp<V>(k));
    }
    channel_gain_ = gain;
    least_comp_ = comp;
    least_exp_ = exp;
  }

  // Group by group in the order of their leaders, as the scalar strip does it.
  void update_in_order(const Quad& quad) {
    for (int strip = 0; strip < Layout::kStrips; ++strip) {
      for (int channel = 0; channel < Layout::kChannels; ++channel) {
        const int lane = links_.group_lane(strip * Layout::kChannelStride + channel);
        if (links_.leader(lane) != channel) continue;
        update_gain_and_level(dyn_meters(lane), quad, lane);
      }
    }
    update_others(quad);
    start_shared();
  }

  float* meters_[Layout::kStrips];
  const LinkLanes<Layout>& links_;
  V gain_, level_, channel_gain_;
  V least_comp_, least_exp_;  // factors: a reduction is 1 - factor
  IntsOf<V> since_;           // number of the quad, or sample, that set gain_
  IntsOf<V> now_;             // number of the next one
  bool shared_is_positive_;
};

}  // namespace channelstrip
