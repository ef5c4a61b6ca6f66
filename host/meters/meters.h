// A strip's meters over an audio file.

#pragma once

#include <optional>
#include <string>

#include "../run/strip_options.h"
#include "meter_rows.h"

namespace channelstrip::host {

struct MetersOptions {
  std::string input;
  StripOptions strip = {};
  double interval = 100;  // ms, above 0
  RowFormat format = RowFormat::kCsv;
  std::optional<std::string> output = {};  // none: standard output
};

// Periods per row: the nearest whole number, at least one.
std::size_t periods_per_row(double milliseconds, int sample_rate);

// One row per interval; the last one may be shorter. Memory doesn't grow with the file. Throws
// std::runtime_error, one line for the user, or Interrupted.
void write_meters(const MetersOptions& options);

}  // namespace channelstrip::host
