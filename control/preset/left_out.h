// Bands that a sample rate has no room for.

#pragma once

#include "preset.h"

namespace channelstrip::host {

// Makes the bands whose frequency isn't below half the sample rate neutral, in the settings and in
// every change. Adds a remark for each, "FILE:LINE:COLUMN: key: what became of it".
void leave_out_bands_above(Preset& preset, double sample_rate);

}  // namespace channelstrip::host
