// The bilinear transform of an analog section.

#pragma once

#include "prototype.h"
#include "section.h"

namespace channelstrip::host {

// s = cot(w/2) (1 - z^-1) / (1 + z^-1), which maps the band's frequency w, in radians per sample,
// exactly. With second-order prototypes it gives the cookbook's coefficients.
Section bilinear(const AnalogSection& analog, double omega);

}  // namespace channelstrip::host
