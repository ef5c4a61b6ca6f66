#include "stem_format.h"

#include <algorithm>
#include <array>

namespace channelstrip::host {
namespace {

constexpr std::array<StemFormat, 11> kFormats{{
    {"Mono", "AlgEntry_16_Stem_Mono", 1, 1},
    {"Stereo", "AlgEntry_16_Stem_Stereo", 2, 1},
    {"LCR", "AlgEntry_16_Stem_LCR", 3, 2},
    {"Quad", "AlgEntry_16_Stem_Quad", 4, 2},
    {"LCRS", "AlgEntry_16_Stem_LCRS", 4, 3},
    {"5.0", "AlgEntry_16_Stem_5_0", 5, 3},
    {"5.1", "AlgEntry_16_Stem_5_1", 6, 4},
    {"6.0", "AlgEntry_16_Stem_6_0", 6, 4},
    {"6.1", "AlgEntry_16_Stem_6_1", 7, 5},
    {"7.0", "AlgEntry_16_Stem_7_0", 7, 4},
    {"7.1", "AlgEntry_16_Stem_7_1", 8, 5},
}};

constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool same_name(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, lower, lower);
}

}  // namespace

std::span<const StemFormat> stem_formats() {
  return kFormats;
}

std::vector<std::string> stem_format_names() {
  std::vector<std::string> names;
  names.reserve(std::size(kFormats));
  for (const StemFormat& format : kFormats) names.emplace_back(format.name);
  return names;
}

const StemFormat* find_stem_format(std::string_view name) {
  const auto format = std::ranges::find_if(
      kFormats, [name](const StemFormat& candidate) { return same_name(candidate.name, name); });
  return format == kFormats.end() ? nullptr : &*format;
}

}  // namespace channelstrip::host
