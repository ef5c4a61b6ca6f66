// How well single precision holds a preset's bands.

#pragma once

#include <string>
#include <vector>

#include "control/preset/precision.h"

namespace channelstrip::host {

// A table with a line for each band, and a mark at what is remarkable.
std::string bands_text(const std::vector<JudgedBand>& bands, double sample_rate);

// {"sample_rate": ..., "bands": [{"key", "where", "type", "frequency", "deviation_db",
// "deviation_frequency", "noise_dbfs"}]}
std::string bands_json(const std::vector<JudgedBand>& bands, double sample_rate);

}  // namespace channelstrip::host
