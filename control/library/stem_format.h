// The eleven stem formats the library processes.

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

struct StemFormat {
  std::string_view name;         // as engineers write it: "Mono", "LCRS", "5.1"
  std::string_view entry_point;  // exported by the library
  int channels;                  // N
  int groups;                    // G, link groups the dynamics can hold
};

std::span<const StemFormat> stem_formats();

std::vector<std::string> stem_format_names();

// The format of that name (letter case ignored), or null.
const StemFormat* find_stem_format(std::string_view name);

}  // namespace channelstrip::host
