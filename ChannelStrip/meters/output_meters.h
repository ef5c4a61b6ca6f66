// Peak meters on the strip's input and output, and the strip's bypass; once per block.

#pragma once

#include <stdint.h>

#include "../dynamics/dyn_records.h"
#include "../lanes/lanes.h"
#include "../lanes/quad.h"

namespace channelstrip {

// Updates both peaks by one input and one output sample, of one channel or of one per lane.
template <typename V>
CHANNELSTRIP_INLINE void meter(V& inputPeak, V& outputPeak, V x, V y, V inputGain) {
  inputPeak = maximum(inputPeak, magnitude(x * inputGain));
  outputPeak = maximum(outputPeak, magnitude(y));
}

template <int Channels, bool Bypass>
void meter_block(const float* const* inputs, float* const* outputs, float* inputPeaks,
                 float* outputPeaks, float inputGain, int32_t blockOffset) {
  for (int c = 0; c < Channels; ++c) {
    const float* const in = inputs[c] + blockOffset;
    float* const out = outputs[c] + blockOffset;
    float inputPeak = inputPeaks[c], outputPeak = outputPeaks[c];
    for (int i = 0; i < kBlock; ++i) {
      const float x = in[i];
      if constexpr (Bypass) out[i] = x;
      const float y = Bypass ? x : out[i];
      meter(inputPeak, outputPeak, x, y, inputGain);
    }
    inputPeaks[c] = inputPeak;
    outputPeaks[c] = outputPeak;
  }
}

// Updates the N input and N output peaks by samples blockOffset to + kBlock - 1. Bypass is a hard
// switch: inputs are copied to outputs after all other stages have run and updated their state.
template <int Channels>
void OutputMeters_AlgorithmProcessFunction(const float* const* inputs, float* const* outputs,
                                           float* inputPeaks, float* outputPeaks,
                                           const Dyn_SCoefsBlock* coefs, int32_t blockOffset) {
  const float inputGain = coefs->inputMeterGain;
  if (coefs->bypass > 0) {
    meter_block<Channels, true>(inputs, outputs, inputPeaks, outputPeaks, inputGain, blockOffset);
  } else {
    meter_block<Channels, false>(inputs, outputs, inputPeaks, outputPeaks, inputGain, blockOffset);
  }
}

}  // namespace channelstrip
