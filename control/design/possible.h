// What a strip can do. Each function judges settings by the limits that settings.h gives, and by
// whether single precision can hold what is designed from them; it returns the first thing that is
// impossible, or nothing. None allocates or throws.
//
// The design functions take settings of which nothing is refused.

#pragma once

#include <optional>

#include "channel_layout.h"
#include "refusal.h"
#include "settings.h"

namespace channelstrip::host {

// In this order: sample rate, glide, the bands before and after the dynamics, compressor, expander,
// detector, key filter, link maps, and the gains and the mix.
std::optional<Refusal> refusal_of(const StripSettings& settings, double sample_rate,
                                  const ChannelLayout& layout);

// Parts by themselves. What a band's type doesn't use is not read.
std::optional<Refusal> refusal_of(const BandSettings& band, double sample_rate);
std::optional<Refusal> refusal_of(const CompressorSettings& settings);
std::optional<Refusal> refusal_of(const ExpanderSettings& settings);
std::optional<Refusal> refusal_of(const DetectorSettings& settings, double sample_rate);

}  // namespace channelstrip::host
