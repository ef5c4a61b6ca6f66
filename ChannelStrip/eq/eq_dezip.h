// The glide of the EQ coefficients: one step before every quad, and the resynchronisation after
// every block.
//
//   smoothed := smoothed + (target - coef) rate;   coef := smoothed rounded to single
//
// The distance is measured from the rounded coefficient, so a glide comes to rest as soon as that
// equals the target, though the double may still be half a unit in the last place away.

#pragma once

#include "../lanes/moves.h"
#include "eq_records.h"

namespace channelstrip {

// One step of one coefficient, or of one per lane: a subtraction and a product, each rounded to
// single; nothing is fused.
template <typename V>
CHANNELSTRIP_INLINE void glide(V& coef, DoublesOf<V>& smoothed, V target, V rate) {
  const V distance = target - coef;
  const V step = distance * rate;
  smoothed = smoothed + widened(step);
  coef = narrowed<V>(smoothed);
}

// One step of every coefficient of every band, whether a pass runs the band or not.
inline void eq_dezip_step(EQ_SDezipCoefs* dezip, const EQ_SCoefs* targets, float rate) {
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    glide(dezip->coefs[i], dezip->smoothedCoefs[i], targets->targetCoefs[i], rate);
  }
}

// Sets coefs to the rounded running values again, even if something else wrote coefs alone.
inline void eq_resynchronise(EQ_SDezipCoefs* dezip) {
  using Part = Lanes<kDoubles>;
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; i += kDoubles) {
    store(dezip->coefs + i, narrowed<Part>(load<DoublesOf<Part>>(dezip->smoothedCoefs + i)));
  }
}

}  // namespace channelstrip
