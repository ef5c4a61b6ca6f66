// The dynamics of one link group as plain loops over a block.

#pragma once

#include <ChannelStrip/dynamics/ballistics.h>
#include <ChannelStrip/dynamics/group.h>
#include <ChannelStrip/frame/context.h>
#include <ChannelStrip/lanes/section.h>

#include "plain_block.h"

namespace channelstrip::bench {

// The running values of a detector.
struct PlainDetector {
  const Dyn_SCoefsBlock& coefs;
  float z1, z2, peak, smooth;

  CHANNELSTRIP_INLINE float detect(float level) {
    smooth = level;
    run_section<1>(coefs.detectorFilter, z1, z2, &smooth);
    peak = select(level > peak, level, peak * coefs.peakDecay);
    return select(detects_smoothed(coefs), smooth, peak);
  }
};

class PlainGroup {
 public:
  // `meters` are the dynamics readouts, `leader` is the group's lowest channel.
  void load(const SChannelStrip_Alg_Context& strip, int leader, float* meters) {
    coefs_ = strip.dynCoefs;
    record_ = strip.dynState + leader;
    rate_ = strip.dynState[0].dezipRate;
    state_ = group_state(*record_);
    meters_ = meters;
    own_gain_ = meters + CHANNELSTRIP_METER_CHANNEL_GAIN + leader;
  }
  void store() const { store_group_state(*record_, state_); }

  PlainDetector detector() const {
    return {*coefs_, state_.detZ1, state_.detZ2, state_.peakLevel, state_.smoothLevel};
  }
  void set(const PlainDetector& detector) {
    state_.detZ1 = detector.z1;
    state_.detZ2 = detector.z2;
    state_.peakLevel = detector.peak;
    state_.smoothLevel = detector.smooth;
  }

  // Turns detected levels into gains, makeup included.
  void find_gains(const Block& detected, Block& gains) {
    Block decibels, comp, exp, product;
    levels_to_db(detected, decibels);
    find_targets(decibels, comp, exp);
    const GroupState<float> state = smooth_terms(decibels, comp, exp, gains);
    for_each_sample([&](int i) { product[i] = comp[i] * exp[i]; });
    for_each_sample([&](int i) { gains[i] = gains[i] * product[i]; });
    state_ = state;
    update_readouts(detected, comp, exp, product);
  }

 private:
  // The curves, with what the comparisons select computed apart from them.
  void find_targets(const Block& decibels, Block& comp, Block& exp) const {
    const Dyn_SCoefsBlock coefs = *coefs_;
    Block line, knee;
    for_each_sample([&](int i) {
      const float level = decibels[i];
      line[i] = (level - coefs.compThreshold) * coefs.compSlope;
      knee[i] = coefs.compKneeA * (level * level) + coefs.compKneeB * level + coefs.compKneeC;
    });
    for_each_sample([&](int i) {
      const float up_to_knee = select(decibels[i] > coefs.compKneeLow, knee[i], 0.0f);
      comp[i] = select(decibels[i] > coefs.compKneeHigh, line[i], up_to_knee);
    });
    for_each_sample([&](int i) {
      const float level = decibels[i];
      line[i] = (level - coefs.expThreshold) * coefs.expSlope;
      knee[i] = coefs.expKneeA * (level * level) + coefs.expKneeB * level + coefs.expKneeC;
    });
    for_each_sample([&](int i) {
      const float from_knee = select(decibels[i] <= coefs.expKneeHigh, knee[i], 0.0f);
      exp[i] = select(decibels[i] < coefs.expKneeLow, line[i], from_knee);
    });
  }

  // Turns targets into linear factors, sample by sample; `makeup` is the one of each sample.
  GroupState<float> smooth_terms(const Block& decibels, Block& comp, Block& exp,
                                 Block& makeup) const {
    const Dyn_SCoefsBlock& coefs = *coefs_;
    GroupState<float> state = state_;
    for (int quad = 0; quad < kBlock; quad += kQuad) {
      state.curCompRange = approach(state.curCompRange, coefs.compRange, rate_);
      state.curExpRange = approach(state.curExpRange, coefs.expRange, rate_);
      state.curMakeupGain = approach(state.curMakeupGain, coefs.makeupGain, rate_);
      for (int i = quad; i < quad + kQuad; ++i) {
        state.compGain = compressor_term(coefs, state.compGain, comp[i], state.curCompRange);
        state.open = gate_stays_open(coefs, state.open, decibels[i]);
        expander_term(coefs, state.expGain, state.hold,
                      expander_target(exp[i], state.open, state.curExpRange));
        comp[i] = DbToGain(state.compGain);
        exp[i] = DbToGain(state.expGain);
        makeup[i] = state.curMakeupGain;
      }
    }
    return state;
  }

  void update_readouts(const Block& detected, const Block& comp, const Block& exp,
                       const Block& gains) {
    Block comp_reduction, exp_reduction;
    for_each_sample([&](int i) { comp_reduction[i] = 1.0f - comp[i]; });
    for_each_sample([&](int i) { exp_reduction[i] = 1.0f - exp[i]; });
    raise(meters_[CHANNELSTRIP_METER_COMP_REDUCTION], greatest(comp_reduction));
    raise(meters_[CHANNELSTRIP_METER_EXP_REDUCTION], greatest(exp_reduction));
    const float most = greatest(gains);
    raise(*own_gain_, most);
    float& gain = meters_[CHANNELSTRIP_METER_GAIN];
    float& level = meters_[CHANNELSTRIP_METER_LEVEL];
    if (gain != 0 && !(most > gain)) return;
    for (int i = 0; i < kBlock; ++i) {
      if (gains[i] > gain || (gain == 0 && detected[i] > level)) {
        gain = gains[i];
        level = detected[i];
      }
    }
  }

  static void raise(float& held, float value) { held = maximum(held, value); }

  const Dyn_SCoefsBlock* coefs_;
  Dyn_SState* record_;
  float rate_;
  float* meters_;
  float* own_gain_;
  GroupState<float> state_;
};

}  // namespace channelstrip::bench
