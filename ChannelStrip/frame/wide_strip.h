// Instances of one stem format side by side in lanes, for the length of a call: the same stages in
// the same order as channel_strip.h runs them on one instance in memory.
//
// Everything is loaded from the records once, processed quad by quad, and stored once. That is
// right only where nothing that is written overlaps anything else in use (independence.h).

#pragma once

#include "../dynamics/group_lanes.h"
#include "../dynamics/key_lanes.h"
#include "../dynamics/readout_lanes.h"
#include "../eq/eq_lanes.h"
#include "../meters/meter_lanes.h"
#include "context.h"

namespace channelstrip {

template <typename Layout>
class WideStrip {
 public:
  CHANNELSTRIP_INLINE explicit WideStrip(const SChannelStrip_Alg_Context* const* strips)
      : strips_(strips),
        eq_(strips),
        key_(strips),
        links_(strips),
        readouts_(strips, links_),
        meters_(strips) {
    load_curve_coefs<Layout>(curves_, strips);
    load_group_coefs<Layout>(groups_, strips);
    load_group_states<Layout>(group_state_, strips, links_);
    for (int lane = 0; lane < kWidth<Channel>; ++lane) {
      const SChannelStrip_Alg_Context& strip = *strips[Layout::strip_of_channel_lane(lane)];
      const int channel = Layout::channel_of(lane);
      inputs_[lane] = strip.inputs[channel];
      outputs_[lane] = Layout::is_channel(lane) ? strip.outputs[channel] : nullptr;
    }
    rate_ = fill<Group>(
        [&](int lane) { return strips[Layout::strip_of_group_lane(lane)]->dynState[0].dezipRate; });
  }

  // The stages are pipelined: in one iteration they work on different quads, so that the dependency
  // chain of one from sample to sample overlaps with the arithmetic of others. Stages that work on
  // the same quad stand in their order.
  CHANNELSTRIP_INLINE void process(int32_t quads) {
    const auto is_quad = [=](int32_t q) {
      return static_cast<uint32_t>(q) < static_cast<uint32_t>(quads);
    };
    for (int32_t q = 0; q < quads + kFinish; ++q) {
      if (is_quad(q - kGains)) find_gains(passing(q - kGains).gain);
      const bool both = kPairs && is_quad(q) && is_quad(q - kFinish);
      if (both) {
        start_and_finish(q);
      } else if (is_quad(q - kFinish)) {
        finish(q - kFinish);
      }
      if (is_quad(q - kTargets)) find_targets(curves_, passing(q - kTargets).gain);
      if (is_quad(q - kSmooth)) {
        smooth_terms(groups_, group_state_, rate_, passing(q - kSmooth).gain);
      }
      if (!both && is_quad(q)) start(q);
      if (is_quad(q - kKey)) filter_key(q - kKey);
      if (is_quad(q - kDetect)) detect_levels(q - kDetect);
    }
  }

  CHANNELSTRIP_INLINE void store() const {
    eq_.store(strips_);
    key_.store(strips_);
    store_group_states<Layout>(strips_, links_, group_state_);
    readouts_.store();
    meters_.store(strips_);
  }

 private:
  using Channel = typename Layout::Channel;
  using Group = typename Layout::Group;

  static constexpr bool kPairs = EqLanes<Layout, 1>::kPairs;

  // How many quads each stage lags behind start. A single strip would spend most of its time
  // waiting for results, so its pipeline is deeper.
  static constexpr bool kAlone = Layout::kStrips == 1;
  static constexpr int kKey = kAlone ? 1 : 0, kDetect = kAlone ? 2 : 0;
  static constexpr int kTargets = kAlone ? 3 : 1, kSmooth = kAlone ? 4 : 1;
  static constexpr int kGains = kAlone ? 5 : 2, kFinish = kAlone ? 6 : 2;
  // In one iteration a quad is finished before another one starts in its place.
  static constexpr int kPassing = power_of_two_from(kFinish);

  // A quad on its way through the strip. Its size is a multiple of two cache lines: with 64 bytes
  // less a call of sixteen mono strips took 0.4 us longer (Zen 5).
  struct alignas(128) Passing {
    Channel input[kQuad], audio[kQuad], detection[kQuad];
    GainQuad<Group, Layout::kStride> gain;
  };

  CHANNELSTRIP_INLINE Passing& passing(int32_t q) {
    return passing_[static_cast<uint32_t>(q) % kPassing];
  }

  // Equaliser before the dynamics.
  CHANNELSTRIP_INLINE void start(int32_t q) {
    Channel audio[kQuad];
    enter(q, audio);
    eq_.run(0, q, audio);
    keep(q, audio);
  }

  // Gain, equaliser after the dynamics, meters.
  CHANNELSTRIP_INLINE void finish(int32_t q) {
    Channel audio[kQuad];
    amplify(q, audio);
    eq_.run(1, q, audio);
    leave(q, audio);
  }

  // Starts quad q and finishes the one that is due, both passes of the equaliser side by side.
  CHANNELSTRIP_INLINE void start_and_finish(int32_t q) {
    if constexpr (kPairs) {
      Channel before[kQuad], after[kQuad];
      enter(q, before);
      amplify(q - kFinish, after);
      eq_.run_both(q, before, q - kFinish, after);
      leave(q - kFinish, after);
      keep(q, before);
    }
  }

  CHANNELSTRIP_INLINE void enter(int32_t q, Channel (&audio)[kQuad]) {
    load_lanes(audio, inputs_, q * kQuad);
    for (int k = 0; k < kQuad; ++k) passing(q).input[k] = audio[k];
    eq_.glide_before(q);
  }
  CHANNELSTRIP_INLINE void keep(int32_t q, const Channel (&audio)[kQuad]) {
    for (int k = 0; k < kQuad; ++k) passing(q).audio[k] = audio[k];
  }
  CHANNELSTRIP_INLINE void amplify(int32_t q, Channel (&audio)[kQuad]) {
    Passing& quad = passing(q);
    readouts_.update(quad.gain);
    for (int k = 0; k < kQuad; ++k) {
      const Group gain = quad.gain.makeup * quad.gain.gain(k);
      audio[k] = links_.listen_or_gain(quad.detection[k], quad.audio[k], gain);
    }
  }
  CHANNELSTRIP_INLINE void leave(int32_t q, Channel (&audio)[kQuad]) {
    meters_.meter(passing(q).input, audio);
    store_lanes(audio, outputs_, q * kQuad);
  }

  CHANNELSTRIP_INLINE void filter_key(int32_t q) {
    key_.detect(passing(q).audio, q * kQuad, passing(q).detection);
  }

  CHANNELSTRIP_INLINE void detect_levels(int32_t q) {
    Passing& quad = passing(q);
    Group levels[kQuad];
    for (int k = 0; k < kQuad; ++k) levels[k] = links_.levels(magnitude(quad.detection[k]));
    detect(groups_, group_state_, levels, quad.gain);
  }

  const SChannelStrip_Alg_Context* const* strips_;
  const float* inputs_[kWidth<Channel>];
  float* outputs_[kWidth<Channel>];
  Passing passing_[kPassing];

  EqLanes<Layout, kPassing> eq_;
  KeyLanes<Layout> key_;
  LinkLanes<Layout> links_;
  CurveCoefs<Covering<4 * Layout::kStride>> curves_;
  GroupCoefs<Group> groups_;
  GroupState<Group> group_state_;
  Group rate_;  // weight per quad of ranges and makeup
  ReadoutLanes<Layout> readouts_;
  MeterLanes<Layout> meters_;
};

}  // namespace channelstrip
