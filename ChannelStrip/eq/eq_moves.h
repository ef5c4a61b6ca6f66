// Whether coefficients glide or rest, which decides how a call runs.

#pragma once

#include "../frame/context.h"
#include "eq_dezip.h"

namespace channelstrip {

// Whether a glide step changed any bit. If not, no further step of the call will: targets and rate
// are constant for the length of a call.
template <typename V>
class GlideChange {
 public:
  CHANNELSTRIP_INLINE void add(V coefs, V new_coefs, DoublesOf<V> smoothed,
                               DoublesOf<V> new_smoothed) {
    coefs_ |= (IntsOf<V>)coefs ^ (IntsOf<V>)new_coefs;
    smoothed_ |= (LongsOf<V>)smoothed ^ (LongsOf<V>)new_smoothed;
  }
  CHANNELSTRIP_INLINE bool any() const { return any_bit(coefs_) || any_bit(smoothed_); }

 private:
  IntsOf<V> coefs_{};
  LongsOf<V> smoothed_{};
};

// Adds the change that the strip's next step would make.
template <typename V>
CHANNELSTRIP_INLINE void add_next_step(GlideChange<V>& change,
                                       const SChannelStrip_Alg_Context& strip) {
  const EQ_SDezipCoefs& dezip = *strip.eqDezipCoefs;
  const V rate = broadcast<V>(strip.dynState[0].dezipRate);
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; i += kWidth<V>) {
    const auto coefs = load<V>(dezip.coefs + i);
    const auto smoothed = load<DoublesOf<V>>(dezip.smoothedCoefs + i);
    V new_coefs = coefs;
    DoublesOf<V> new_smoothed = smoothed;
    glide(new_coefs, new_smoothed, load<V>(strip.eqTargetCoefs->targetCoefs + i), rate);
    change.add(coefs, new_coefs, smoothed, new_smoothed);
  }
}

CHANNELSTRIP_INLINE bool eq_moves(const SChannelStrip_Alg_Context& strip) {
  GlideChange<Lanes<4>> change;
  add_next_step(change, strip);
  return change.any();
}

}  // namespace channelstrip
