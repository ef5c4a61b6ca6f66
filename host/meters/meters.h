// A strip's meters over an audio file.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../run/strip_options.h"
#include "../system/output_file.h"
#include "meter_rows.h"

namespace channelstrip::host {

struct MetersOptions {
  std::string input;
  StripOptions strip = {};
  double interval = 100;  // ms, above 0
  RowFormat format = RowFormat::kCsv;
  std::optional<std::string> output = {};  // none: standard output
  Existing existing = Existing::kKept;
};

// Periods per row: the nearest whole number, at least one.
std::size_t periods_per_row(double milliseconds, int sample_rate);

// What a run has to say besides: StripRun's lines.
struct MetersRemarks {
  std::vector<std::string> remarks, cut_short;
};

// One row per interval; the last one may be shorter. Memory doesn't grow with the file. Throws
// std::runtime_error, one line for the user, or Interrupted.
MetersRemarks write_meters(const MetersOptions& options);

}  // namespace channelstrip::host
