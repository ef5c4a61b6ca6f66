// The glide of the EQ coefficients and the cascade of bands.

#pragma once

#include <ChannelStrip/eq/eq_records.h>

#include "section.h"
#include "strip_state.h"

namespace channelstrip::model {

inline constexpr int kQuad = 4;

// Moves every coefficient one step towards its target. The distance is measured from the rounded
// coefficient in use, so the glide ends as soon as that one equals its target.
template <typename Real>
void glide_coefs(EqCoefs<Real>& coefs, const EQ_SCoefs& targets, Real rate) {
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    const Real distance = static_cast<Real>(targets.targetCoefs[i]) - coefs.used[i];
    const Real step = distance * rate;
    coefs.smoothed[i] += static_cast<double>(step);
    coefs.used[i] = static_cast<Real>(coefs.smoothed[i]);
  }
}

template <typename Real>
void resynchronise_coefs(EqCoefs<Real>& coefs) {
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    coefs.used[i] = static_cast<Real>(coefs.smoothed[i]);
  }
}

// Runs bands `first` to `end` - 1 over samples `at` to `at` + 3 of one channel. All four are read
// before any is written: `out` may be `in` or overlap it.
template <typename Real>
void equalise(const EqCoefs<Real>& coefs, EqMemory<Real>& memory, const Real* in, Real* out, int at,
              int first, int end, SumOrder order) {
  Real quad[kQuad] = {in[at], in[at + 1], in[at + 2], in[at + 3]};
  for (int band = first; band < end; ++band) {
    const Section<Real> section(coefs.used + 5 * band);
    for (Real& sample : quad) {
      sample = run_section(section, sample, memory.z1[band], memory.z2[band], order);
    }
  }
  for (Real sample : quad) out[at++] = sample;
}

}  // namespace channelstrip::model
