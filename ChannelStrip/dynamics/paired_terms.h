// The terms of compressor and expander side by side in one register, for a strip with one link
// group: the compressor's in lane 0, the expander's in lane 2. Both take the steps of an expander
// whose term has a floor; the compressor's gate stays open, and its term is never held.

#pragma once

#include "gain_computer.h"

namespace channelstrip {

class PairedTerms {
 public:
  using V = Lanes<4>;

  CHANNELSTRIP_INLINE void load(const GroupCoefs<V>& coefs, const GroupState<V>& state) {
    gates_.gateCloseThreshold = pair(none(), coefs.gateCloseThreshold);
    gates_.gateOpenThreshold = pair(none(), coefs.gateOpenThreshold);
    rise_ = pair(coefs.compRelease, coefs.expAttack);
    fall_ = pair(coefs.compAttack, coefs.expRelease);
    samples_ = (WordsOf<V>)pair(V{}, (V)coefs.hold);
    term_ = pair(state.compGain, state.expGain);
    open_ = state.open;  // the compressor's has no threshold to stay below
    hold_ = (WordsOf<V>)pair(V{}, (V)state.hold);
  }

  // Targets to smoothed terms, as smooth_terms has them.
  template <typename Quad>
  CHANNELSTRIP_INLINE void smooth(const GroupCoefs<V>& coefs, GroupState<V>& state, V rate,
                                  Quad& quad) {
    glide_ranges(coefs, state, rate, quad);
    const V target_floor = pair(none(), state.curExpRange);
    const V floor = pair(state.curCompRange, none());
    V term = term_, terms[kQuad];
    MaskOf<V> open = open_;
    WordsOf<V> hold = hold_;
    for (int k = 0; k < kQuad; ++k) {
      const V level = quad.decibels.row(k);
      open = gate_stays_open(gates_, open, pair(level, level));
      const V target = expander_target(pair(quad.comp(k), quad.exp(k)), open, target_floor);
      const MaskOf<V> rises = target > term;
      const V step = maximum(step_towards(term, target, rises, rise_, fall_), floor);
      hold_term(term, hold, step, rises, samples_);
      terms[k] = term;
    }
    for (int k = 0; k < kQuad; ++k) quad.terms.set_row(k, terms[k]);
    for (int k = 0; k < kQuad; ++k) quad.terms.set_row(kQuad + k, of_expander(terms[k]));
    term_ = term;
    open_ = open;
    hold_ = hold;
  }

  CHANNELSTRIP_INLINE void store(GroupState<V>& state) const {
    state.compGain = term_;
    state.expGain = of_expander(term_);
    state.open = (MaskOf<V>)of_expander((V)open_);
    state.hold = (WordsOf<V>)of_expander((V)hold_);
  }

 private:
  // Below every level and term: no threshold, no floor.
  CHANNELSTRIP_INLINE static V none() { return broadcast<V>(-__builtin_inff()); }

  CHANNELSTRIP_INLINE static V pair(V comp, V exp) {
    return __builtin_shufflevector(comp, exp, 0, 1, 4, 5);
  }
  CHANNELSTRIP_INLINE static V of_expander(V x) {
    return __builtin_shufflevector(x, x, 2, 3, 2, 3);
  }

  GateThresholds<V> gates_;
  V rise_, fall_;  // weights per sample
  WordsOf<V> samples_;
  V term_;
  MaskOf<V> open_;
  WordsOf<V> hold_;
};

}  // namespace channelstrip
