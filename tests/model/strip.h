// One whole instance: the stages in their order, quad by quad and block by block.
//
// With Real = float it rounds where the library must: given an order of a section's sums, all bits
// are fixed. With Real = double it computes the same without those roundings.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>

#include <type_traits>

#include "detector.h"
#include "double_buffers.h"
#include "equaliser.h"
#include "meters.h"
#include "strip_state.h"

namespace channelstrip::model {

template <typename Real>
struct Buffers {
  const Real* const* inputs;
  Real* const* outputs;
  const Real* key;  // may be null
};

// Takes coefficients, targets, rate and count from the context; buffers and state are arguments.
template <typename Real>
void run(StripState<Real>& state, const SChannelStrip_Alg_Context& context,
         const Buffers<Real>& audio, int channels, int groups, SumOrder order) {
  const Dyn_SCoefsBlock& dyn = *context.dynCoefs;
  const EQ_SCoefs& eq = *context.eqTargetCoefs;
  const Real rate = Real(context.dynState[0].dezipRate);
  Real* meters = state.meters;

  const auto eq_pass = [&](const Real* const* in, int pass, int at) {
    for (int c = 0; c < channels; ++c) {
      equalise(state.eq_coefs, state.eq[c], in[c], audio.outputs[c], at, eq.firstBand[pass],
               eq.endBand[pass], order);
    }
  };

  const int count = *context.sampleCount;
  for (int block = 0; block < count; block += kBlock) {
    for (int at = block; at < block + kBlock; at += kQuad) {
      glide_coefs(state.eq_coefs, eq, rate);
      eq_pass(audio.inputs, 0, at);
      process_dynamics(dyn, state.dyn, audio.outputs, audio.key, at, rate, meters + 2 * channels,
                       channels, groups, order);
      eq_pass(audio.outputs, 1, at);
    }
    resynchronise_coefs(state.eq_coefs);
    process_meters(dyn, audio.inputs, audio.outputs, meters, meters + channels, block, channels);
  }
}

// What an entry point does with one instance, on the context's own records and buffers.
template <typename Real>
void process(const SChannelStrip_Alg_Context& context, int channels, int groups, SumOrder order,
             LevelWatch* watch = nullptr) {
  const int32_t key = *context.keyInputIndex;
  if (*context.sampleCount < 1) return;
  StripState<Real> state = load<Real>(context, channels);
  for (DynMemory<Real>& memory : state.dyn) memory.watch = watch;
  if constexpr (std::is_same_v<Real, float>) {
    run<float>(state, context,
               {context.inputs, context.outputs, key != 0 ? context.inputs[key] : nullptr},
               channels, groups, order);
  } else {
    DoubleBuffers buffers(context, channels);
    run<double>(state, context, {buffers.inputs(), buffers.outputs(), buffers.key()}, channels,
                groups, order);
    buffers.write_outputs();
  }
  store(state, context, channels);
}

}  // namespace channelstrip::model
