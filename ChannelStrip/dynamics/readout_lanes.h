// The dynamics readouts in lanes, for the length of a call: a lane per link group or, where there
// is one group only, a lane per sample of the quad.
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
  using Quad = GainQuad<Group, Layout::kStride, Layout::kWidest>;

  CHANNELSTRIP_INLINE ReadoutLanes(const SChannelStrip_Alg_Context* const* strips,
                                   const LinkLanes<Layout>& links)
      : links_(links) {
    for (int s = 0; s < Layout::kStrips; ++s) meters_[s] = *strips[s]->meterOutputs;
    channel_gain_ = fill<Group>([&](int lane) {
      const int leader = links.leader(lane);
      return dyn_meters(lane)[CHANNELSTRIP_METER_CHANNEL_GAIN + (leader < 0 ? 0 : leader)];
    });
    least_comp_ = least_exp_ = broadcast<Group>(__builtin_inff());
    now_ = fill<IntsOf<Group>>([](int lane) { return kSamples == 1 ? 0 : lane; });
    start_shared();
  }

  CHANNELSTRIP_INLINE void update(const Quad& quad) {
    if (!shared_is_positive_) return update_in_order(quad);
    Group gain = gain_, level = level_;
    IntsOf<Group> since = since_;
    for (int k = 0; k < kRows; ++k) {
      const auto greater = quad.gain(k) > gain;
      level = select(greater, quad.detected.row(k), level);
      since = select(greater, now_, since);
      gain = maximum(gain, quad.gain(k));
    }
    gain_ = gain;
    level_ = level;
    since_ = since;
    now_ += kSamples;
    update_others(quad);
  }

  CHANNELSTRIP_INLINE void store() const {
    float gains[kWidth<Group>], levels[kWidth<Group>], own[kWidth<Group>];
    float comp[kWidth<Group>], exp[kWidth<Group>];
    int32_t since[kWidth<Group>];
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
        for (int lane = group; lane < group + kSamples; ++lane) {
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
  // With one group, a single load of a row takes all four samples of the quad.
  static constexpr int kSamples = Layout::kStride == 1 ? kQuad : 1;
  static constexpr int kRows = kQuad / kSamples;

  CHANNELSTRIP_INLINE float* dyn_meters(int lane) const {
    return meters_[Layout::strip_of_group_lane(lane)] + 2 * Layout::kChannels;
  }

  CHANNELSTRIP_INLINE void start_shared() {
    gain_ = fill<Group>([&](int lane) { return dyn_meters(lane)[CHANNELSTRIP_METER_GAIN]; });
    level_ = fill<Group>([&](int lane) { return dyn_meters(lane)[CHANNELSTRIP_METER_LEVEL]; });
    since_ = IntsOf<Group>{} + kNever;
    shared_is_positive_ = !any_bit(gain_ <= Group{});
  }

  CHANNELSTRIP_INLINE void update_others(const Quad& quad) {
    Group gain = channel_gain_, comp = least_comp_, exp = least_exp_;
    for (int k = 0; k < kRows; ++k) {
      gain = maximum(gain, quad.gain(k));
      comp = minimum(comp, quad.comp(k));
      exp = minimum(exp, quad.exp(k));
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
  Group gain_, level_, channel_gain_;
  Group least_comp_, least_exp_;  // factors: a reduction is 1 - factor
  IntsOf<Group> since_;           // number of the quad, or sample, that set gain_
  IntsOf<Group> now_;             // number of the next one
  bool shared_is_positive_;
};

}  // namespace channelstrip
