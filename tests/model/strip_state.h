// The state of one instance in the model's own arithmetic: loaded from the records and the meter
// array before a call, stored back after it.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>

#include <cstdint>
#include <type_traits>

namespace channelstrip::model {

inline constexpr int kMaxChannels = 8;
inline constexpr int kMaxGroups = 5;
inline constexpr int kMaxMeters = 3 * kMaxChannels + 4;

// Sees what the gain computer compares, sample by sample.
class LevelWatch {
 public:
  virtual ~LevelWatch() = default;

  // The detector's level, the same in dB, and whether the gate was open before this sample.
  virtual void see(double level, double db, bool gate_was_open, const Dyn_SCoefsBlock& c) = 0;
};

template <typename Real>
struct EqCoefs {
  Real used[CHANNELSTRIP_EQ_COEFS];
  double smoothed[CHANNELSTRIP_EQ_COEFS];
};

template <typename Real>
struct EqMemory {
  Real z1[CHANNELSTRIP_EQ_BANDS];
  Real z2[CHANNELSTRIP_EQ_BANDS];
};

template <typename Real>
struct DynMemory {
  Real comp_gain, exp_gain;  // dB
  Real key_z1, key_z2, det_z1, det_z2;
  Real peak_level, smooth_level;  // linear
  Real makeup_gain;               // linear
  Real comp_range, exp_range;     // dB
  int32_t gate_open;
  uint32_t hold_count;
  LevelWatch* watch;  // may be null
};

template <typename Real>
struct StripState {
  EqCoefs<Real> eq_coefs;
  EqMemory<Real> eq[kMaxChannels];
  DynMemory<Real> dyn[kMaxChannels];
  Real meters[kMaxMeters];
};

// Calls action(field of the state, field of the record) for every field that is both read and
// written. The host's own fields are not visited.
template <typename Real, typename Action>
void visit_fields(StripState<Real>& state, const SChannelStrip_Alg_Context& context, int channels,
                  Action action) {
  for (int i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    action(state.eq_coefs.used[i], context.eqDezipCoefs->coefs[i]);
    action(state.eq_coefs.smoothed[i], context.eqDezipCoefs->smoothedCoefs[i]);
  }
  for (int c = 0; c < channels; ++c) {
    EqMemory<Real>& eq = state.eq[c];
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      action(eq.z1[band], context.eqState[c].z1[band]);
      action(eq.z2[band], context.eqState[c].z2[band]);
    }
    DynMemory<Real>& dyn = state.dyn[c];
    Dyn_SState& record = context.dynState[c];
    action(dyn.comp_gain, record.compGain);
    action(dyn.exp_gain, record.expGain);
    action(dyn.key_z1, record.keyZ1);
    action(dyn.key_z2, record.keyZ2);
    action(dyn.det_z1, record.detZ1);
    action(dyn.det_z2, record.detZ2);
    action(dyn.peak_level, record.peakLevel);
    action(dyn.smooth_level, record.smoothLevel);
    action(dyn.makeup_gain, record.curMakeupGain);
    action(dyn.comp_range, record.curCompRange);
    action(dyn.exp_range, record.curExpRange);
    action(dyn.gate_open, record.gateOpen);
    action(dyn.hold_count, record.holdCount);
  }
  for (int i = 0; i < 3 * channels + 4; ++i) {
    action(state.meters[i], (*context.meterOutputs)[i]);
  }
}

template <typename Real>
StripState<Real> load(const SChannelStrip_Alg_Context& context, int channels) {
  StripState<Real> state{};
  visit_fields(state, context, channels, [](auto& ours, const auto& theirs) {
    ours = static_cast<std::remove_reference_t<decltype(ours)>>(theirs);
  });
  return state;
}

template <typename Real>
void store(StripState<Real>& state, const SChannelStrip_Alg_Context& context, int channels) {
  visit_fields(state, context, channels, [](const auto& ours, auto& theirs) {
    theirs = static_cast<std::remove_reference_t<decltype(theirs)>>(ours);
  });
}

}  // namespace channelstrip::model
