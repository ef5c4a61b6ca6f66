// The gain computer of a link group: from the linked levels of a quad to its gains.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/frame/context.h>

#include "ballistics.h"
#include "conversions.h"
#include "curves.h"
#include "equaliser.h"
#include "section.h"
#include "strip_state.h"

namespace channelstrip::model {

// The running maximum: keeps what is held unless the value is greater, so a NaN never enters.
template <typename Real>
Real maximum(Real held, Real value) {
  return value > held ? value : held;
}

// `levels` holds the linked levels before the call and the gains, makeup included, after it.
// `meters` are the dynamics readouts, `slot` is the index of the group's gain among them.
template <typename Real>
void process_gain(Real (&levels)[kQuad], DynMemory<Real>& s, const Dyn_SCoefsBlock& c, Real rate,
                  int slot, Real* meters, SumOrder order) {
  s.comp_range = towards(Real(c.compRange), s.comp_range, rate);
  s.exp_range = towards(Real(c.expRange), s.exp_range, rate);
  s.makeup_gain = towards(Real(c.makeupGain), s.makeup_gain, rate);

  const Section<Real> smoother(c.detectorFilter);
  const Curve<Real> compressor = compressor_curve<Real>(c);
  const Curve<Real> expander = expander_curve<Real>(c);

  for (Real& level : levels) {
    s.peak_level = peak_after(level, s.peak_level, Real(c.peakDecay));
    s.smooth_level = run_section(smoother, level, s.det_z1, s.det_z2, order);
    const Real detected = c.detectorMode > 0 ? s.smooth_level : s.peak_level;
    const Real db = level_to_db(detected);

    if (s.watch != nullptr) s.watch->see(double(detected), double(db), s.gate_open > 0, c);

    s.comp_gain = compressor_term(compressor_target(compressor, db), s.comp_gain,
                                  Real(c.compAttack), Real(c.compRelease), s.comp_range);

    Real target = expander_target(expander, db);
    if (target < s.exp_range) target = s.exp_range;
    const bool open =
        gate_is_open(s.gate_open > 0, db, Real(c.gateOpenThreshold), Real(c.gateCloseThreshold));
    if (!open) target = s.exp_range;
    s.gate_open = open ? 1 : 0;
    s.exp_gain = expander_term(target, s.exp_gain, Real(c.expAttack), Real(c.expRelease),
                               hold_samples(c.expHoldSamples), s.hold_count);

    const Real compressor_gain = db_to_gain(s.comp_gain);
    const Real expander_gain = db_to_gain(s.exp_gain);
    const Real gain = compressor_gain * expander_gain;
    level = s.makeup_gain * gain;

    Real& meter_level = meters[CHANNELSTRIP_METER_LEVEL];
    Real& meter_gain = meters[CHANNELSTRIP_METER_GAIN];
    const bool first = meter_gain == Real(0) && detected > meter_level;
    if (gain > meter_gain || first) {
      meter_gain = gain;
      meter_level = detected;
    }
    Real& compressor_reduction = meters[CHANNELSTRIP_METER_COMP_REDUCTION];
    Real& expander_reduction = meters[CHANNELSTRIP_METER_EXP_REDUCTION];
    meters[slot] = maximum(meters[slot], gain);
    compressor_reduction = maximum(compressor_reduction, Real(1) - compressor_gain);
    expander_reduction = maximum(expander_reduction, Real(1) - expander_gain);
  }
}

}  // namespace channelstrip::model
