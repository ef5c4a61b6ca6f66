// The glide of the EQ coefficients and the cascade of bands.

#pragma once

#include <ChannelStrip/eq/eq_records.h>

#include "section.h"
#include "strip_state.h"

namespace channelstrip::model {

inline constexpr int kQuad = 4;

// One step of every coefficient towards its target. The distance is measured from the rounded
// value in use, so the step ends exactly where that one meets the target.
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

// Bands first to end - 1 over samples `at` to `at` + 3 of one channel. The four are read before
// any is written: `out` may be or overlap `in`.
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
