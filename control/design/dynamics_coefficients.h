// The dynamics' coefficient record from settings, stage by stage.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

#include <optional>

#include "channel_layout.h"
#include "link_map.h"
#include "settings.h"

namespace channelstrip::host {

// Each writes its stage's fields and no others. Without settings a stage's term stays at 0 dB.
void design_compressor(const std::optional<CompressorSettings>& wanted, double sample_rate,
                       Dyn_SCoefsBlock& out);
void design_expander(const std::optional<ExpanderSettings>& wanted, double sample_rate,
                     Dyn_SCoefsBlock& out);

// All but the key filter.
void design_detector(const DetectorSettings& settings, double sample_rate, Dyn_SCoefsBlock& out);

// The link map of read_links().
void design_links(const StripSettings& settings, const ChannelLayout& layout, Dyn_SCoefsBlock& out);

// The map that design_links() wrote.
LinkMap links_of(const Dyn_SCoefsBlock& dynamics);

// Key, listening, bypass and metering.
void design_modes(const StripSettings& settings, Dyn_SCoefsBlock& out);

}  // namespace channelstrip::host
