#include "precision.h"

#include <algorithm>
#include <cmath>

namespace channelstrip::test {
namespace {

double distance(float a, float b) {
  return std::fabs(static_cast<double>(a) - static_cast<double>(b));
}

double signal_error(const Scene& single, const Scene& exact, const Instance& it) {
  const auto samples = static_cast<std::size_t>(std::max(0, (it.count + 15) / 16 * 16));
  double error = 0.0, peak = 0.0;
  for (std::size_t at : it.outputs_at) {
    for (std::size_t i = at; i < at + samples; ++i) {
      error = std::max(error, distance(single.arena[i], exact.arena[i]));
      peak = std::max(peak, std::fabs(static_cast<double>(exact.arena[i])));
    }
  }
  return error > 0.0 ? error / peak : 0.0;
}

double gain_error(const Instance& single, const Instance& exact) {
  const std::size_t channels = single.outputs_at.size();
  double error = 0.0;
  for (std::size_t c = 0; c < channels; ++c) {
    const Dyn_SState &s = single.dyn_state[c], &e = exact.dyn_state[c];
    error = std::max({error, distance(s.compGain, e.compGain), distance(s.expGain, e.expGain)});
    const std::size_t readout = 2 * channels + CHANNELSTRIP_METER_CHANNEL_GAIN + c;
    const auto gain = static_cast<double>(single.meters[readout]);
    const auto exact_gain = static_cast<double>(exact.meters[readout]);
    if (gain > 0.0 && exact_gain > 0.0) {
      error = std::max(error, std::fabs(20.0 * std::log10(gain / exact_gain)));
    }
  }
  return error;
}

}  // namespace

void PrecisionError::keep_maximum(const PrecisionError& other) {
  signal = std::max(signal, other.signal);
  gain = std::max(gain, other.gain);
}

PrecisionError precision_error(const Scene& single, const Scene& exact) {
  PrecisionError error;
  for (std::size_t i = 0; i < single.instances.size(); ++i) {
    error.keep_maximum({signal_error(single, exact, exact.instances[i]),
                        gain_error(single.instances[i], exact.instances[i])});
  }
  return error;
}

}  // namespace channelstrip::test
