// The block processor: the order of the stages, nothing else.
//
// Before every quad of four samples the EQ coefficients glide by one step. Then the bands before
// the dynamics filter the inputs into the outputs, and the dynamics and the bands after it work
// on the outputs in place. After the four quads of a block the coefficients are resynchronised and
// the meters run. Blocks are always whole, so a count of 20 processes 32 samples.

#pragma once

#include "../dynamics/detector.h"
#include "../eq/eq_dezip.h"
#include "../eq/eq_filter.h"
#include "../meters/output_meters.h"
#include "context.h"
#include "independence.h"
#include "narrow_strip.h"
#include "wide_strip.h"

namespace channelstrip {

// How many samples a count above 0 processes: whole blocks, at most 2^31 samples.
constexpr int64_t whole_blocks(int32_t count) {
  return (int64_t{count} + kBlock - 1) / kBlock * kBlock;
}

template <int Channels, int Groups>
void process_block(const SChannelStrip_Alg_Context* context, const float* key, float dezipRate,
                   float* meters, int32_t blockOffset) {
  const EQ_SCoefs* const targets = context->eqTargetCoefs;
  EQ_SDezipCoefs* const coefs = context->eqDezipCoefs;
  EQ_SState* const state = context->eqState;
  float* const* const outputs = context->outputs;

  for (int32_t quadOffset = 0; quadOffset < kBlock; quadOffset += kQuad) {
    eq_dezip_step(coefs, targets, dezipRate);
    EQ_AlgorithmProcessFunction<Channels>(coefs, state, context->inputs, outputs, quadOffset,
                                          targets->firstBand[0], targets->endBand[0], blockOffset);
    Dynamics_AlgorithmProcessFunction<Channels, Groups>(context, outputs, outputs, key, quadOffset,
                                                        meters + 2 * Channels, blockOffset);
    EQ_AlgorithmProcessFunction<Channels>(coefs, state, outputs, outputs, quadOffset,
                                          targets->firstBand[1], targets->endBand[1], blockOffset);
  }
  eq_resynchronise(coefs);
  OutputMeters_AlgorithmProcessFunction<Channels>(
      context->inputs, outputs, meters, meters + Channels, context->dynCoefs, blockOffset);
}

// What is read here is read once per call, everything else anew for every quad or block.
template <int Channels, int Groups>
void process_instance(const SChannelStrip_Alg_Context* context) {
  const int32_t keyIndex = *context->keyInputIndex;
  const int32_t sampleCount = *context->sampleCount;
  if (sampleCount < 1) return;

  const float* const key = keyIndex != 0 ? context->inputs[keyIndex] : nullptr;
  const float dezipRate = context->dynState[0].dezipRate;
  float* const meters = *context->meterOutputs;

  for (int64_t offset = 0; offset < whole_blocks(sampleCount); offset += kBlock) {
    process_block<Channels, Groups>(context, key, dezipRate, meters, static_cast<int32_t>(offset));
  }
}

// The largest count that is processed in lanes: numbers of samples, which go a few quads past the
// end and count every sample twice where there are two link groups, stay far from overflow.
constexpr uint32_t kMostInLanes = 1 << 29;

// Whether instances can be processed side by side in lanes: with equal counts and band ranges, and
// independent of each other. A band that runs in both passes prevents it: it hands its state from
// one pass to the other within a quad, but in lanes the passes work on different quads at a time.
template <int Channels, int Groups, int Strips>
bool fit_in_lanes(const SChannelStrip_Alg_Context* const* strips) {
  const int32_t count = *strips[0]->sampleCount;
  const EQ_SCoefs& eq = *strips[0]->eqTargetCoefs;
  if (static_cast<uint32_t>(count) - 1 >= kMostInLanes) return false;  // none, or too many
  for (int s = 1; s < Strips; ++s) {
    if (*strips[s]->sampleCount != count) return false;
    const EQ_SCoefs& other = *strips[s]->eqTargetCoefs;
    for (int pass = 0; pass < 2; ++pass) {
      if (other.firstBand[pass] != eq.firstBand[pass]) return false;
      if (other.endBand[pass] != eq.endBand[pass]) return false;
    }
  }
  const bool shared_band = (eq.firstBand[0] < eq.endBand[1]) & (eq.firstBand[1] < eq.endBand[0]) &
                           (eq.firstBand[0] < eq.endBand[0]) & (eq.firstBand[1] < eq.endBand[1]);
  if (shared_band) return false;
  if constexpr (!CoefLanes<Layout<Channels, Groups, Strips>, 1>::kMayMove) {
    for (int s = 0; s < Strips; ++s) {
      if (eq_moves(*strips[s])) return false;
    }
  }
  return are_independent<Channels, Strips>(strips, whole_blocks(count));
}

// Either takes most of a call's stack; apart, they don't add up.
template <int Channels>
[[gnu::noinline]] void process_narrow(const SChannelStrip_Alg_Context* const* strip,
                                      int32_t quads) {
  NarrowStrip<Channels> narrow(strip, quads);
  narrow.process();
  narrow.store();
}
template <typename Layout>
[[gnu::noinline]] void process_wide(const SChannelStrip_Alg_Context* const* strips, int32_t quads) {
  WideStrip<Layout> wide(strips);
  wide.process(quads);
  wide.store();
}

template <int Channels, int Groups, int Strips>
void process_in_lanes(const SChannelStrip_Alg_Context* const* strips) {
  const auto quads = static_cast<int32_t>(whole_blocks(*strips[0]->sampleCount) / kQuad);
  // A single block doesn't fill the narrow strip's pipeline.
  if constexpr (Strips == 1 && Channels <= 2) {
    if (quads > kBlock / kQuad) return process_narrow<Channels>(strips, quads);
  }
  process_wide<Layout<Channels, Groups, Strips>>(strips, quads);
}

// Whether instances are quicker side by side than one after the other. Two mono ones aren't, where
// each is a narrow strip by itself and the call is long enough to fill its pipeline.
template <int Channels, int Strips>
constexpr bool side_by_side_pays(int32_t count) {
  constexpr int32_t kShort = 96;
  return Channels > 1 || Strips != 2 || kLanes < 8 || count <= kShort;
}

// Processes the first instances of a range, as many as can go side by side in lanes, or else one.
// Returns how many.
template <int Channels, int Groups, int Strips>
CHANNELSTRIP_INLINE int process_first(const SChannelStrip_Alg_Context* const* strips,
                                      int64_t count) {
  if (count >= Strips && side_by_side_pays<Channels, Strips>(*strips[0]->sampleCount) &&
      fit_in_lanes<Channels, Groups, Strips>(strips)) {
    process_in_lanes<Channels, Groups, Strips>(strips);
    return Strips;
  }
  if constexpr (Strips > 1) {
    return process_first<Channels, Groups, Strips / 2>(strips, count);
  } else {
    process_instance<Channels, Groups>(*strips);
    return 1;
  }
}

// Processes a range: independent instances in lanes, all others one after the other, stage by stage
// on the records and buffers themselves.
template <int Channels, int Groups>
void ChannelStrip_AlgorithmProcessFunction(const SChannelStrip_Alg_Context* const* begin,
                                           const void* end) {
  constexpr int kFitting = kLanes / power_of_two_from(Channels);
  constexpr int kStrips = kFitting < 1 ? 1 : kFitting;
  const auto last = static_cast<const SChannelStrip_Alg_Context* const*>(end);
  while (begin != last) {
    begin += process_first<Channels, Groups, kStrips>(begin, last - begin);
  }
}

}  // namespace channelstrip
