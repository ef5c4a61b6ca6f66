// Settings that keep everything in a strip at work, as an engineer might have them on a busy bus.

#pragma once

#include <control/design/strip_coefficients.h>

namespace channelstrip::bench {

inline constexpr double kSampleRate = 48000;

// All eight bands, all before the dynamics or four before and four after it; a compressor with a
// soft knee, a gate with hysteresis, peak detection behind a key filter. `moved` settings differ in
// every coefficient of every band, in makeup and in both ranges.
host::StripCoefficients busy_coefficients(const host::StemFormat& format, bool all_before,
                                          bool moved);

}  // namespace channelstrip::bench
