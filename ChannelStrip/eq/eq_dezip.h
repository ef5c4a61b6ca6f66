// The glide of the EQ coefficients: one step before every quad, and the resynchronisation after
// every block.
//
//   smoothed := smoothed + (target - coef) rate;   coef := smoothed rounded to single
//
// The distance is measured from the rounded coefficient, so a glide comes to rest exactly when
// that one equals the target, wherever in its half unit the double then stands.

#pragma once

#include "eq_records.h"

namespace channelstrip {

// Every coefficient of every band, whether a pass runs the band or not. The step is a subtraction
// and a product, each rounded to single; nothing is fused.
inline void eq_dezip_step(EQ_SDezipCoefs* dezip, const EQ_SCoefs* targets, float rate) {
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    const float distance = targets->targetCoefs[i] - dezip->coefs[i];
    const float step = distance * rate;
    const double smoothed = dezip->smoothedCoefs[i] + static_cast<double>(step);
    dezip->smoothedCoefs[i] = smoothed;
    dezip->coefs[i] = static_cast<float>(smoothed);
  }
}

// Leaves the pair consistent even if something wrote coefs alone.
inline void eq_resynchronise(EQ_SDezipCoefs* dezip) {
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    dezip->coefs[i] = static_cast<float>(dezip->smoothedCoefs[i]);
  }
}

}  // namespace channelstrip
