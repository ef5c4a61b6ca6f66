// The filters of another program's text file, line by line.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "control/design/settings.h"

namespace channelstrip::host {

struct SourceLine {
  int number = 0;    // from 1
  std::string text;  // UTF-8 without control characters, trimmed
};

struct FilterList {
  struct Band {
    SourceLine source;
    BandSettings settings;
  };
  struct Gain {
    SourceLine source;
    double decibels = 0;
  };
  struct LeftOut {
    SourceLine source;
    std::string reason;
  };

  std::string program;          // whose format the text is in
  std::vector<Band> bands;      // in the file's order
  std::vector<Gain> preamps;    // they add up
  std::vector<SourceLine> off;  // filters that the file switches off
  std::vector<LeftOut> left_out;
};

// A Room EQ Wizard "Filter Settings file" begins with headings, of which only a preamp counts. From
// its first filter on, and in an Equalizer APO configuration from the beginning, every line counts
// except comments. A line that isn't for all channels alike, stands under a condition, is no filter
// or isn't understood goes to `left_out`.
FilterList parse_filter_list(std::string_view utf8);

}  // namespace channelstrip::host
