// The peak meters and the bypass, once per block of 16.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

#include <cmath>

#include "gain_computer.h"

namespace channelstrip::model {

inline constexpr int kBlock = 16;

template <typename Real>
void process_meters(const Dyn_SCoefsBlock& c, const Real* const* inputs, Real* const* outputs,
                    Real* input_peaks, Real* output_peaks, int at, int channels) {
  for (int ch = 0; ch < channels; ++ch) {
    for (int i = at; i < at + kBlock; ++i) {
      const Real input = inputs[ch][i];
      if (c.bypass > 0) outputs[ch][i] = input;
      const Real output = c.bypass > 0 ? input : outputs[ch][i];
      input_peaks[ch] = maximum(input_peaks[ch], std::fabs(input * Real(c.inputMeterGain)));
      output_peaks[ch] = maximum(output_peaks[ch], std::fabs(output));
    }
  }
}

}  // namespace channelstrip::model
