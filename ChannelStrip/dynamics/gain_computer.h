// The gain computer: the linked levels of one group become its gains, in place.
//
// Detector level -> decibels -> compressor and expander targets -> ballistics -> linear gains. The
// two terms act in series; makeup scales the gains but no readout. There is no look-ahead.

#pragma once

#include "../frame/context.h"
#include "../lanes/quad.h"
#include "../lanes/section.h"
#include "ballistics.h"
#include "conversions.h"
#include "curves.h"
#include "group.h"

namespace channelstrip {

// A quad on its way from levels to gains.
template <typename V, int Stride>
struct GainQuad {
  static constexpr int kWidest = kWidth<V> == 1 ? 1 : kLanes;
  Rows<V, Stride, kWidest> detected;  // detector level, linear
  Rows<V, Stride, kWidest> decibels;  // detector level, dB
  // Target (dB), then smoothed term (dB), then linear factor: the compressor's quad, and behind it
  // the expander's, whose target is the curve without range and gate.
  Rows<V, Stride, kWidest, 2 * kQuad> terms;
  V makeup;

  // The numbers of sample k; a W wider than its row holds those of the next samples, too.
  template <typename W = V>
  CHANNELSTRIP_INLINE W comp(int k) const {
    return terms.template row<W>(k);
  }
  template <typename W = V>
  CHANNELSTRIP_INLINE W exp(int k) const {
    return terms.template row<W>(kQuad + k);
  }
  // The product of the factors, without makeup.
  template <typename W = V>
  CHANNELSTRIP_INLINE W gain(int k) const {
    return comp<W>(k) * exp<W>(k);
  }
};

// A level is compared with the peak before the peak decays: one between the two values doesn't stop
// the decay.
template <typename V>
CHANNELSTRIP_INLINE V peak_detector(V peak, V level, V decay) {
  return select(level > peak, level, peak * decay);
}

// Both detectors run whatever the mode, so that a switch of the mode continues from current values.
template <typename Coefs, typename V, typename Quad>
CHANNELSTRIP_INLINE void detect(const Coefs& coefs, GroupState<V>& state, const V (&levels)[kQuad],
                                Quad& quad) {
  V smooth[kQuad];
  for (int k = 0; k < kQuad; ++k) smooth[k] = levels[k];
  run_section<kQuad>(coefs.detectorFilter, state.detZ1, state.detZ2, smooth);

  V peak = state.peakLevel;
  for (int k = 0; k < kQuad; ++k) {
    peak = peak_detector(peak, levels[k], coefs.peakDecay);
    quad.detected.set_row(k, select(detects_smoothed(coefs), smooth[k], peak));
  }
  state.peakLevel = peak;
  state.smoothLevel = smooth[kQuad - 1];
}

// Detected levels to targets.
template <typename Coefs, typename Quad>
CHANNELSTRIP_INLINE void find_targets(const Coefs& coefs, Quad& quad) {
  quad.decibels.map([](auto used, auto level) { return level_to_db(used, level); }, quad.detected);
  quad.terms.template map<0, kQuad>(
      [&](auto, auto level) { return compressor_curve(coefs, level); }, quad.decibels);
  quad.terms.template map<kQuad, kQuad>(
      [&](auto, auto level) { return expander_curve(coefs, level); }, quad.decibels);
}

// Ranges and makeup glide by one step per quad, and all its samples use the new values.
template <typename Coefs, typename V, typename Quad>
CHANNELSTRIP_INLINE void glide_ranges(const Coefs& coefs, GroupState<V>& state, V rate,
                                      Quad& quad) {
  state.curCompRange = approach(state.curCompRange, coefs.compRange, rate);
  state.curExpRange = approach(state.curExpRange, coefs.expRange, rate);
  state.curMakeupGain = approach(state.curMakeupGain, coefs.makeupGain, rate);
  quad.makeup = state.curMakeupGain;
}

// Targets to smoothed terms: the strip's longest dependency chain from sample to sample.
template <typename Coefs, typename V, typename Quad>
CHANNELSTRIP_INLINE void smooth_terms(const Coefs& coefs, GroupState<V>& state, V rate,
                                      Quad& quad) {
  glide_ranges(coefs, state, rate, quad);
  V comp = state.compGain, exp = state.expGain;
  MaskOf<V> open = state.open;
  WordsOf<V> hold = state.hold;
  V comp_terms[kQuad], exp_terms[kQuad];
  for (int k = 0; k < kQuad; ++k) {
    comp = compressor_term(coefs, comp, quad.comp(k), state.curCompRange);
    open = gate_stays_open(coefs, open, quad.decibels.row(k));
    expander_term(coefs, exp, hold, expander_target(quad.exp(k), open, state.curExpRange));
    comp_terms[k] = comp;
    exp_terms[k] = exp;
  }
  for (int k = 0; k < kQuad; ++k) quad.terms.set_row(k, comp_terms[k]);
  for (int k = 0; k < kQuad; ++k) quad.terms.set_row(kQuad + k, exp_terms[k]);
  state.compGain = comp;
  state.expGain = exp;
  state.open = open;
  state.hold = hold;
}

// Smoothed terms to linear factors.
template <typename Quad>
CHANNELSTRIP_INLINE void find_gains(Quad& quad) {
  quad.terms.map([](auto used, auto term) { return db_to_gain(used, term); }, quad.terms);
}

// A gain readout of 0 counts as empty: any sample above the level readout then sets both, whatever
// its gain.
template <typename Quad>
void update_gain_and_level(float* dynMeters, const Quad& quad, int lane) {
  float* const level = &dynMeters[CHANNELSTRIP_METER_LEVEL];
  float* const gain = &dynMeters[CHANNELSTRIP_METER_GAIN];
  for (int k = 0; k < kQuad; ++k) {
    const float sample_gain = lane_of(quad.gain(k), lane);
    const float detected = lane_of(quad.detected.row(k), lane);
    if (sample_gain > *gain || (*gain == 0.0f && detected > *level)) {
      *gain = sample_gain;
      *level = detected;
    }
  }
}

// Updates the four readouts that all groups share, and the group's own.
inline void update_readouts(float* dynMeters, int32_t meterSlot, const GainQuad<float, 1>& quad) {
  update_gain_and_level(dynMeters, quad, 0);
  float* const compReduction = &dynMeters[CHANNELSTRIP_METER_COMP_REDUCTION];
  float* const expReduction = &dynMeters[CHANNELSTRIP_METER_EXP_REDUCTION];
  for (int k = 0; k < kQuad; ++k) {
    dynMeters[meterSlot] = maximum(dynMeters[meterSlot], quad.gain(k));
    *compReduction = maximum(*compReduction, 1.0f - quad.comp(k));
    *expReduction = maximum(*expReduction, 1.0f - quad.exp(k));
  }
}

// levels: in, the group's linear levels, not negative; out, its linear gains, makeup included.
// state is the record of the group's lowest channel; dynMeters element 2N of the meter array;
// meterSlot the index in it of that channel's gain readout.
inline void ProcessAudioGain(float (&levels)[kQuad], Dyn_SState* state,
                             const SChannelStrip_Alg_Context* context, float dezipRate,
                             int32_t meterSlot, float* dynMeters) {
  const Dyn_SCoefsBlock& coefs = *context->dynCoefs;
  GroupState<float> running = group_state(*state);
  GainQuad<float, 1> quad;
  detect(coefs, running, levels, quad);
  find_targets(coefs, quad);
  smooth_terms(coefs, running, dezipRate, quad);
  find_gains(quad);
  for (int k = 0; k < kQuad; ++k) levels[k] = quad.makeup * quad.gain(k);
  store_group_state(*state, running);
  update_readouts(dynMeters, meterSlot, quad);
}

}  // namespace channelstrip
