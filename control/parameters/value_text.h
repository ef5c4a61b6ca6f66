// Values as people read and write them: "2.5 kHz", "4:1", "inf:1", "off", "-18 dB".

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "parameters.h"

namespace channelstrip::host {

// With up to four digits that count.
std::string value_text(const Parameter& parameter, double value);

// The legal value nearest to what the text says, with or without a unit; none if it says nothing.
// "inf" is the greatest ratio, "off" 0, and for a choice a word of it, whatever its letters' case.
std::optional<double> value_from(const Parameter& parameter, std::string_view text);

}  // namespace channelstrip::host
