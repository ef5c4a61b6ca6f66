// Meter intervals as lines of text.

#pragma once

#include <string>
#include <vector>

#include "meter_interval.h"

namespace channelstrip::host {

enum class RowFormat {
  kCsv,       // RFC 4180 with a header line; infinite values are inf and -inf
  kJsonLines  // one object per line, channels by label; infinite values are null
};

// Decibels have three decimals and the time, in seconds, six. Both end their lines themselves.
std::string header(RowFormat format, const std::vector<std::string>& labels);  // empty for JSON
std::string row(RowFormat format, const std::vector<std::string>& labels, double time,
                const MeterInterval& interval);

}  // namespace channelstrip::host
