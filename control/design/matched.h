// Digital sections with the analog magnitude up to half the sample rate, where the bilinear
// transform cramps it.
//
// M. Vicanek, "Matched Second Order Digital Filters", 2016: poles by impulse invariance, a
// numerator that matches the analog magnitude at chosen frequencies. "Matched One-Pole Digital
// Shelving Filters", 2019, for the tilt. The choices of where to match are explained with each
// type.

#pragma once

#include "prototype.h"
#include "section.h"

namespace channelstrip::host {

// `analog` is a section of a band of `type` with the frequency `omega`, in radians per sample,
// inside (0, pi). All zeros but an all-pass's lie inside the unit circle or, as stop bands need
// them, on it.
//
// Up to 0.9 of half the sample rate, with a frequency up to 0.4 of the rate, a Q of 2 or less and a
// gain of 12 dB or less, the magnitude is off the analog one by less than 1 dB for a peak, 1.5 dB
// for a shelf, 0.5 dB for a tilt, 2.5 dB for a notch and 1.7 dB for a pass of 12 dB/oct or a
// band-pass (2.2 dB for a high pass). Shelves of a higher Q are better off with the bilinear
// transform.
Section matched(BandType type, const AnalogSection& analog, double omega);

}  // namespace channelstrip::host
