// A band's filter from its settings.

#pragma once

#include "prototype.h"
#include "section.h"
#include "settings.h"

namespace channelstrip::host {

// The band's section_count() sections, the least resonant first. What a type doesn't use is not
// read. The band must be possible, see possible.h; in double precision one is, too, that is refused
// for single precision alone.
Sections design_band(const BandSettings& band, double sample_rate);

// The band as the library gets it, in single precision.
Sections design_stored_band(const BandSettings& band, double sample_rate);

}  // namespace channelstrip::host
