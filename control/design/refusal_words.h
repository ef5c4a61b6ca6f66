// Refusals in words, for programs that show them to a user.

#pragma once

#include <string>

#include "refusal.h"

namespace channelstrip::host {

// "compressor.knee 0.05 dB is not 0 or 0.1 to 200 dB", "eq band 3: ...": one line that names the
// setting.
std::string words_of(const Refusal& refusal);

// Throws std::invalid_argument with the words for settings that a strip can't have.
void require_possible(const StripSettings& settings, double sample_rate,
                      const ChannelLayout& layout);

}  // namespace channelstrip::host
