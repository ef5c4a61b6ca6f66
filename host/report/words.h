// Numbers as a report writes them.

#pragma once

#include <optional>
#include <string>

namespace channelstrip::host {

// With a proper minus (U+2212), never "-0.0"; infinite values are ∞.
std::string number(double value, int decimals = 1);

// Of a value that may not exist, an en dash where it doesn't.
std::string number(const std::optional<double>& value, int decimals = 1);

// A change, with its sign; an en dash where either isn't there or isn't finite.
std::string change(const std::optional<double>& before, const std::optional<double>& after);

}  // namespace channelstrip::host
