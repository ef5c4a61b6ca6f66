// Numbers, times and names as messages, reports and pictures write them.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace channelstrip::host {

// With a proper minus (U+2212), never "-0.0"; infinite values are ∞, NaN is an en dash.
std::string number(double value, int decimals = 1);

// The number, or an en dash if there is none.
std::string number(const std::optional<double>& value, int decimals = 1);

// The change with its sign; an en dash if either value is missing or the change isn't finite.
std::string change(const std::optional<double>& before, const std::optional<double>& after);

// A length of time of 0 s or more: "4.200 s", "3 min 04.200 s".
std::string duration(double seconds);

// `text` with every control character replaced, so that a file's name can't break a line.
std::string one_line(std::string_view text, char replacement = '?');

}  // namespace channelstrip::host
