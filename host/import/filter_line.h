// One filter as Room EQ Wizard and Equalizer APO write it.

#pragma once

#include <string_view>

#include "control/design/settings.h"

namespace channelstrip::host {

// The band of "PK Fc 63.2 Hz Gain -5.0 dB Q 4.00", which is what follows "Filter 1: ON". Letter
// case is ignored, and blanks between a number and its unit. A decimal point may be a comma; a
// frequency may have thousands separators. Throws std::invalid_argument with a phrase that says
// what is impossible.
//
// The types and what they mean without a Q follow Equalizer APO's configuration reference, which
// takes over Room EQ Wizard's names:
//
//   PK PEQ Modal     peak; Modal is designed from a decay time, written behind it
//   LP HP LPQ HPQ    passes of 12 dB per octave; Q 0.7071 unless given
//   LP1 HP1          passes of 6 dB per octave
//   BP               band pass; Q 0.7071 unless given
//   NO               notch; Q 30 unless given
//   AP               all-pass
//   LS HS            shelves; the frequency is the corner where the shelf's plateau ends, the slope
//                    0.9 times the steepest without ripple, or as given: "LS 6dB", or by Q
//   LSC HSC          the same; the frequency is the midpoint
//   LSQ HSQ          shelves by Q; the frequency is the midpoint
//
// A bandwidth "BW Oct 0.5" is that of the analog prototype, as no sample rate is known here; where
// there is a Q as well, the Q counts.
BandSettings parse_filter(std::string_view definition);

}  // namespace channelstrip::host
