// The gain computer: the linked levels of one group become its gains, in place.
//
// Detector level -> decibels -> compressor and expander targets -> ballistics -> linear gains. The
// two terms act in series; makeup scales the gains but no readout. There is no look-ahead.

#pragma once

#include "../frame/context.h"
#include "../lanes/raise.h"
#include "../lanes/section.h"
#include "ballistics.h"
#include "curves.h"
#include "dyn_records.h"
#include "fast_log.h"

namespace channelstrip {

// Once per quad; the new values serve all its samples.
inline void glide_range_and_makeup(const Dyn_SCoefsBlock& coefs, Dyn_SState* state, float rate) {
  state->curCompRange = approach(state->curCompRange, coefs.compRange, rate);
  state->curExpRange = approach(state->curExpRange, coefs.expRange, rate);
  state->curMakeupGain = approach(state->curMakeupGain, coefs.makeupGain, rate);
}

// Both detectors run whatever the mode, so a switch continues from current values. A level between
// the decayed and the undecayed peak doesn't hold the peak up: the comparison comes first.
inline void detect(const Dyn_SCoefsBlock& coefs, Dyn_SState* state, const float (&levels)[kQuad],
                   float (&detected)[kQuad]) {
  float smooth[kQuad];
  load_quad(smooth, levels);
  section_quad(coefs.detectorFilter, &state->detZ1, &state->detZ2, smooth);

  float peak = state->peakLevel;
  for (int k = 0; k < kQuad; ++k) {
    peak = levels[k] > peak ? levels[k] : peak * coefs.peakDecay;
    detected[k] = coefs.detectorMode > 0 ? smooth[k] : peak;
  }
  state->peakLevel = peak;
  state->smoothLevel = smooth[kQuad - 1];
}

// Levels in decibels to smoothed compressor terms in decibels.
inline void compress(const Dyn_SCoefsBlock& coefs, Dyn_SState* state, const float (&levels)[kQuad],
                     float (&terms)[kQuad]) {
  const float range = state->curCompRange;
  float term = state->compGain;
  for (int k = 0; k < kQuad; ++k) {
    term = compressor_term(coefs, term, compressor_curve(coefs, levels[k]), range);
    terms[k] = term;
  }
  state->compGain = term;
}

// Levels in decibels to smoothed expander terms in decibels.
inline void expand(const Dyn_SCoefsBlock& coefs, Dyn_SState* state, const float (&levels)[kQuad],
                   float (&terms)[kQuad]) {
  const float range = state->curExpRange;
  bool open = state->gateOpen > 0;
  ExpanderTerm term = {state->expGain, static_cast<uint32_t>(state->holdCount)};
  for (int k = 0; k < kQuad; ++k) {
    open = gate_stays_open(coefs, open, levels[k]);
    term =
        expander_term(coefs, term, expander_target(expander_curve(coefs, levels[k]), open, range));
    terms[k] = term.gain;
  }
  state->gateOpen = open ? 1 : 0;
  state->expGain = term.gain;
  state->holdCount = static_cast<int32_t>(term.hold);
}

// Detector levels, the two factors and their product, all linear, raise the readouts. A gain
// readout of 0 counts as empty: there the loudest sample so far gives the level.
inline void raise_readouts(float* dynMeters, int32_t meterSlot, const float (&detected)[kQuad],
                           const float (&compFactors)[kQuad], const float (&expFactors)[kQuad],
                           const float (&gains)[kQuad]) {
  for (int k = 0; k < kQuad; ++k) {
    float* const level = &dynMeters[CHANNELSTRIP_METER_LEVEL];
    float* const gain = &dynMeters[CHANNELSTRIP_METER_GAIN];
    if (gains[k] > *gain || (*gain == 0.0f && detected[k] > *level)) {
      *gain = gains[k];
      *level = detected[k];
    }
  }
  float* const compReduction = &dynMeters[CHANNELSTRIP_METER_COMP_REDUCTION];
  float* const expReduction = &dynMeters[CHANNELSTRIP_METER_EXP_REDUCTION];
  for (int k = 0; k < kQuad; ++k) {
    dynMeters[meterSlot] = raise(dynMeters[meterSlot], gains[k]);
    *compReduction = raise(*compReduction, 1.0f - compFactors[k]);
    *expReduction = raise(*expReduction, 1.0f - expFactors[k]);
  }
}

// levels: in, the group's linear levels, not negative; out, its linear gains, makeup included.
// state is the record of the group's lowest channel; dynMeters element 2N of the meter array;
// meterSlot the index in it of that channel's gain readout.
template <int Samples>
void ProcessAudioGain(float (&levels)[Samples], Dyn_SState* state,
                      const SChannelStrip_Alg_Context* context, float dezipRate, int32_t meterSlot,
                      float* dynMeters) {
  const Dyn_SCoefsBlock& coefs = *context->dynCoefs;
  float detected[Samples], decibels[Samples], compTerms[Samples], expTerms[Samples];

  glide_range_and_makeup(coefs, state, dezipRate);
  detect(coefs, state, levels, detected);
  for (int k = 0; k < Samples; ++k) decibels[k] = LevelToDb(detected[k]);
  compress(coefs, state, decibels, compTerms);
  expand(coefs, state, decibels, expTerms);

  float compFactors[Samples], expFactors[Samples], gains[Samples];
  for (int k = 0; k < Samples; ++k) {
    compFactors[k] = DbToGain(compTerms[k]);
    expFactors[k] = DbToGain(expTerms[k]);
    gains[k] = compFactors[k] * expFactors[k];
    levels[k] = state->curMakeupGain * gains[k];
  }
  raise_readouts(dynMeters, meterSlot, detected, compFactors, expFactors, gains);
}

}  // namespace channelstrip
