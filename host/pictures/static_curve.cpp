#include "static_curve.h"

#include "../design/dynamics.h"

namespace channelstrip::host {

StaticGain static_gain(const StripSettings& settings, double level, bool gate_open) {
  StaticGain gain;
  if (settings.compressor) gain.compressor = compressor_gain(*settings.compressor, level);
  if (const auto& expander = settings.expander) {
    gain.expander = gate_open ? expander_gain(*expander, level) : expander->range;
  }
  return gain;
}

}  // namespace channelstrip::host
