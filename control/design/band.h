// A band's filter from its settings.

#pragma once

#include "prototype.h"
#include "section.h"
#include "settings.h"

namespace channelstrip::host {

// The band's section_count() sections, the least resonant first. Throws std::invalid_argument,
// naming the setting, for a setting outside its range, a frequency outside (0, rate / 2) or a
// sample rate that isn't finite; what a type doesn't use is not read.
Sections design_band(const BandSettings& band, double sample_rate);

// The band as the library gets it, in single precision. Throws likewise, and also for a band that
// no stable sections of floats can hold: a frequency below about 2.8e-5 of the sample rate.
Sections design_stored_band(const BandSettings& band, double sample_rate);

}  // namespace channelstrip::host
