#include "edit.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "choice.h"

namespace channelstrip::test {
namespace {

using Dyn = Dyn_SCoefsBlock;
using State = Dyn_SState;

constexpr float Dyn::*kNumbers[] = {
    &Dyn::compSlope,     &Dyn::compKneeA,    &Dyn::compKneeB,         &Dyn::compKneeC,
    &Dyn::compKneeLow,   &Dyn::compKneeHigh, &Dyn::compThreshold,     &Dyn::compRange,
    &Dyn::makeupGain,    &Dyn::compAttack,   &Dyn::compRelease,       &Dyn::expSlope,
    &Dyn::expKneeA,      &Dyn::expKneeB,     &Dyn::expKneeC,          &Dyn::expKneeLow,
    &Dyn::expKneeHigh,   &Dyn::expThreshold, &Dyn::gateOpenThreshold, &Dyn::gateCloseThreshold,
    &Dyn::expRange,      &Dyn::expAttack,    &Dyn::expRelease,        &Dyn::peakDecay,
    &Dyn::inputMeterGain};

constexpr int32_t Dyn::*kModes[] = {&Dyn::detectorMode, &Dyn::keyEnable,  &Dyn::keyListen,
                                    &Dyn::bypass,       &Dyn::reserved12, &Dyn::expHoldSamples};

struct Steady {
  float Dyn::*field;
  float low, high;
};
constexpr Steady kSteadyNumbers[] = {{&Dyn::compAttack, 0, 1}, {&Dyn::compRelease, 0, 1},
                                     {&Dyn::expAttack, 0, 1},  {&Dyn::expRelease, 0, 1},
                                     {&Dyn::makeupGain, 0, 3}, {&Dyn::inputMeterGain, -2, 2}};
constexpr int32_t Dyn::*kSteadyModes[] = {&Dyn::detectorMode, &Dyn::keyEnable, &Dyn::keyListen,
                                          &Dyn::bypass, &Dyn::reserved12};

constexpr float State::*kTerms[] = {
    &State::compGain,     &State::expGain,     &State::peakLevel,     &State::smoothLevel,
    &State::curCompRange, &State::curExpRange, &State::curMakeupGain, &State::dezipRate};
constexpr float State::*kMemories[] = {&State::keyZ1, &State::keyZ2, &State::detZ1, &State::detZ2};
constexpr int32_t State::*kCounters[] = {&State::gateOpen, &State::holdCount, &State::reserved14};

template <typename Real>
void set_finite(Real& x, const Step& step) {
  const float value = number(step, static_cast<float>(x));
  if (std::isfinite(value)) x = static_cast<Real>(value);
}

// Leaves zeros alone, because order-free sections must not use those words, and NaNs and
// infinities, which the memory of an unused coefficient becomes when the audio isn't finite.
template <typename Real>
void set_where_used(Real& x, const Step& step) {
  if (x != 0 && std::isfinite(x)) set_finite(x, step);
}

void set_number(Dyn& dyn, const Step& step) {
  float& field = dyn.*chosen(kNumbers, step.index);
  if (step.how % 5 == 4) {
    field =
        dyn.*chosen(kNumbers, step.value);  // e.g. two equal thresholds, or a knee without width
  } else {
    set_finite(field, step);
  }
}

void set_band_in_use(EQ_SDezipCoefs& coefs, const Step& step) {
  if (step.part % 3 != 0) set_where_used(chosen(coefs.coefs, step.index), step);
  if (step.part % 3 != 1) set_where_used(chosen(coefs.smoothedCoefs, step.index), step);
}

void set_state(State& state, const Step& step) {
  const std::size_t choice = step.index / 3;
  switch (step.index % 3) {
    case 0:
      set_finite(state.*chosen(kTerms, choice), step);
      break;
    case 1:
      set_where_used(state.*chosen(kMemories, choice), step);
      break;
    default:
      state.*chosen(kCounters, choice) = integer(step);
  }
}

}  // namespace

void edit_freely(Instance& it, const Step& step) {
  EQ_SState& memory = chosen(it.eq_state, step.part);
  const bool even = step.part % 2 == 0;
  switch (step.what) {
    case What::kDynNumber:
      set_number(it.dyn_coefs, step);
      break;
    case What::kDynMode:
      it.dyn_coefs.*chosen(kModes, step.index) = integer(step);
      break;
    case What::kFilter:
      set_where_used(
          chosen(even ? it.dyn_coefs.keyFilter : it.dyn_coefs.detectorFilter, step.index), step);
      break;
    case What::kBandTarget:
      set_where_used(chosen(it.eq_targets.targetCoefs, step.index), step);
      break;
    case What::kBandInUse:
      set_band_in_use(it.eq_coefs, step);
      break;
    case What::kBandRange:
      chosen(even ? it.eq_targets.firstBand : it.eq_targets.endBand, step.index) =
          static_cast<int32_t>(step.value % (CHANNELSTRIP_EQ_BANDS + 1));
      break;
    case What::kBandMemory:
      set_where_used(chosen(step.index < 8 ? memory.z1 : memory.z2, step.index), step);
      break;
    case What::kDynState:
      set_state(chosen(it.dyn_state, step.part), step);
      break;
    case What::kMeter:
      chosen(it.meters, step.index) = number(step, chosen(it.meters, step.index));
      break;
    default:
      break;
  }
}

void edit_steadily(Instance& it, const Step& step) {
  if (step.what == What::kDynMode) {
    it.dyn_coefs.*chosen(kSteadyModes, step.index) = integer(step);
  } else if (step.what == What::kDynNumber) {
    const Steady& steady = chosen(kSteadyNumbers, step.index);
    float& field = it.dyn_coefs.*steady.field;
    set_finite(field, step);
    field = std::clamp(field, steady.low, steady.high);
  }
}

}  // namespace channelstrip::test
