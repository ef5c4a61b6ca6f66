// The block processor: the order of the stages, nothing else.
//
// Before every quad of four samples the EQ coefficients glide one step; then the bands before the
// dynamics take the inputs to the outputs, and the dynamics and the bands after it work on the
// outputs in place. After the four quads of a block the coefficients are resynchronised and the
// meters run. Blocks are always whole, so a count of 20 processes 32 samples.

#pragma once

#include "../dynamics/detector.h"
#include "../eq/eq_dezip.h"
#include "../eq/eq_filter.h"
#include "../meters/output_meters.h"
#include "context.h"

namespace channelstrip {

template <int Channels, int Block, int Groups>
void process_block(const SChannelStrip_Alg_Context* context, const float* key, float dezipRate,
                   float* meters, int32_t blockOffset) {
  const EQ_SCoefs* const targets = context->eqTargetCoefs;
  EQ_SDezipCoefs* const coefs = context->eqDezipCoefs;
  EQ_SState* const state = context->eqState;
  float* const* const outputs = context->outputs;

  for (int32_t quadOffset = 0; quadOffset < Block; quadOffset += kQuad) {
    eq_dezip_step(coefs, targets, dezipRate);
    EQ_AlgorithmProcessFunction<Channels>(coefs, state, context->inputs, outputs, quadOffset,
                                          targets->firstBand[0], targets->endBand[0], blockOffset);
    Dynamics_AlgorithmProcessFunction<Channels, Groups>(context, outputs, outputs, key, quadOffset,
                                                        meters + 2 * Channels, blockOffset);
    EQ_AlgorithmProcessFunction<Channels>(coefs, state, outputs, outputs, quadOffset,
                                          targets->firstBand[1], targets->endBand[1], blockOffset);
  }
  eq_resynchronise(coefs);
  OutputMeters_AlgorithmProcessFunction<Channels, Block>(
      context->inputs, outputs, meters, meters + Channels, context->dynCoefs, blockOffset);
}

// What is read here is read once per call; everything else is read anew for every quad or block.
template <int Channels, int Block, int Groups>
void process_instance(const SChannelStrip_Alg_Context* context) {
  const int32_t keyIndex = *context->keyInputIndex;
  const int32_t sampleCount = *context->sampleCount;
  if (sampleCount < 1) return;

  const float* const key = keyIndex != 0 ? context->inputs[keyIndex] : nullptr;
  const float dezipRate = context->dynState[0].dezipRate;
  float* const meters = *context->meterOutputs;

  // Counting blocks, not samples, keeps clear of overflow up to the largest count.
  const int32_t blocks = (sampleCount - 1) / Block + 1;
  for (int32_t block = 0; block < blocks; ++block) {
    process_block<Channels, Block, Groups>(context, key, dezipRate, meters, block * Block);
  }
}

template <int Inputs, int Outputs, int Block, int Groups>
void ChannelStrip_AlgorithmProcessFunction(const SChannelStrip_Alg_Context* const* begin,
                                           const void* end) {
  static_assert(Inputs == Outputs, "a strip has as many outputs as inputs");
  static_assert(Block % kQuad == 0, "blocks are whole quads");
  for (auto context = begin; context != end; ++context) {
    process_instance<Inputs, Block, Groups>(*context);
  }
}

}  // namespace channelstrip
