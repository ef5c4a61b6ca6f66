// A whole strip's coefficient records from its settings.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>

#include "channel_layout.h"
#include "settings.h"

namespace channelstrip::host {

// What goes on around the library's strip. The gains are factors.
struct MixCoefficients {
  double gain_in = 1, gain_out = 1;
  double mix = 1;     // share of the processed signal, 0 to 1
  double weight = 1;  // one-pole weight of the glide per sample
  bool bypass = false;

  bool is_neutral() const { return gain_in == 1 && gain_out == 1 && mix == 1; }
};

struct StripCoefficients {
  EQ_SCoefs eq;
  Dyn_SCoefsBlock dynamics;
  float dezip_rate;  // one-pole weight of the glide per quad, four samples
  MixCoefficients mix;
};

// A pure function of its arguments. What is not set is neutral: bands pass, terms stay at 0 dB. The
// link map is that of settings.link for the layout's format, or else that of the link style; it may
// have more groups than the format holds. The settings must be possible, see possible.h. Nothing
// allocates.
StripCoefficients design_strip(const StripSettings& settings, double sample_rate,
                               const ChannelLayout& layout);

// What goes on around the strip, and that with the library's glide.
MixCoefficients design_mix(const StripSettings& settings, double sample_rate);
void design_glide(const StripSettings& settings, double sample_rate, StripCoefficients& out);

}  // namespace channelstrip::host
