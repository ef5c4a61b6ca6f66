#include "strip_split.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>

#include "dynamics_coefficients.h"

namespace channelstrip::host {
namespace {

int most_groups(std::span<const LinkMap> maps, const std::vector<std::size_t>& channels) {
  int most = 0;
  for (const LinkMap& map : maps) most = std::max(most, count_groups(restricted(map, channels)));
  return most;
}

// The sets of channels that the maps link, directly or through other channels.
std::vector<std::vector<std::size_t>> linked_sets(std::span<const LinkMap> maps,
                                                  std::size_t channels) {
  std::vector<std::size_t> set(channels);  // of each channel, named by the set's first member
  std::iota(set.begin(), set.end(), std::size_t{0});
  for (const LinkMap& map : maps) {
    for (std::size_t c = 0; c < channels; ++c) {
      for (std::size_t other = 0; other < c; ++other) {
        if (map[c] != map[other]) continue;
        const auto [first, second] = std::minmax(set[c], set[other]);
        std::ranges::replace(set, std::size_t{second}, std::size_t{first});
      }
    }
  }
  std::vector<std::vector<std::size_t>> members(channels);
  for (std::size_t c = 0; c < channels; ++c) members[set[c]].push_back(c);
  std::erase_if(members, [](const auto& some) { return some.empty(); });
  return members;
}

const StemFormat& format_of(std::size_t channels, int groups) {
  const auto fits = [=](const StemFormat& format) {
    return format.channels == static_cast<int>(channels) && format.groups >= groups;
  };
  const auto format = std::ranges::find_if(stem_formats(), fits);
  if (format != stem_formats().end()) return *format;
  throw std::invalid_argument(
      fmt::format("the link map changes so that a strip of {} channels would need {} groups",
                  channels, groups));
}

}  // namespace

std::vector<SplitStrip> split_strip(const StemFormat& format, std::span<const LinkMap> maps) {
  std::vector<std::size_t> all(static_cast<std::size_t>(format.channels));
  std::iota(all.begin(), all.end(), std::size_t{0});
  if (most_groups(maps, all) <= format.groups) return {{&format, all}};
  std::vector<SplitStrip> strips;
  for (const auto& channels : linked_sets(maps, all.size())) {
    strips.push_back({&format_of(channels.size(), most_groups(maps, channels)), channels});
  }
  std::ranges::stable_sort(strips, {}, &SplitStrip::format);
  return strips;
}

StripCoefficients coefficients_of(const SplitStrip& strip, const StripCoefficients& stream) {
  StripCoefficients result = stream;
  std::ranges::copy(restricted(links_of(stream.dynamics), strip.channels),
                    result.dynamics.linkGroup);
  return result;
}

}  // namespace channelstrip::host
