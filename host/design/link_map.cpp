#include "link_map.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include "require.h"

namespace channelstrip::host {
namespace {

using Labels = std::vector<std::string>;

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (auto end = text.find(separator); end != text.npos; end = text.find(separator)) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parts.push_back(text);
  return parts;
}

Labels words(std::string_view text) {
  std::istringstream stream{std::string(text)};
  return {std::istream_iterator<std::string>(stream), {}};
}

// Groups of any names, one per channel, numbered from 0 in order of first appearance.
template <typename Name>
LinkMap numbered(const std::vector<Name>& groups) {
  LinkMap map{};
  std::vector<Name> seen;
  for (std::size_t c = 0; c < groups.size(); ++c) {
    const auto found = std::ranges::find(seen, groups[c]);
    map[c] = static_cast<int>(found - seen.begin());
    if (found == seen.end()) seen.push_back(groups[c]);
  }
  return map;
}

bool is_surround(std::string_view label) {
  constexpr std::string_view kSurrounds[] = {"Ls", "Rs", "Lb", "Rb", "Cs", "S"};
  return std::ranges::find(kSurrounds, label) != std::end(kSurrounds);
}

// A name that the channels of a group share.
std::string_view group_name(std::string_view label, LinkStyle style) {
  const std::string_view other = partner(label);
  switch (style) {
    case LinkStyle::kPairs:
      return other.empty() ? label : std::min(label, other);
    case LinkStyle::kFilm:
      if (label == "LFE") return label;
      return is_surround(label) ? "surround" : "front";
    case LinkStyle::kMusic:
      return label == "LFE" ? label : "music";
    case LinkStyle::kAll:
      return "all";
    case LinkStyle::kNone:
      return label;
  }
  return label;
}

}  // namespace

int count_groups(const LinkMap& map) {
  return 1 + std::ranges::max(map);
}

LinkMap restricted(const LinkMap& map, std::span<const std::size_t> channels) {
  std::vector<int> groups;
  for (const std::size_t c : channels) groups.push_back(map[c]);
  return numbered(groups);
}

LinkMap link_map(const ChannelLayout& layout, LinkStyle style) {
  std::vector<std::string_view> groups;
  for (const std::string& label : layout.labels) groups.push_back(group_name(label, style));
  return numbered(groups);
}

LinkMap parse_link_map(std::string_view text, const ChannelLayout& layout) {
  const auto parts = split(text, '|');
  std::vector<std::size_t> groups(layout.labels.size(), parts.size());  // parts.size(): none yet
  for (std::size_t part = 0; part < parts.size(); ++part) {
    const Labels members = words(parts[part]);
    if (members.empty()) refuse("the map \"{}\" has an empty group", text);
    for (const std::string& label : members) {
      const auto channel = std::ranges::find(layout.labels, label);
      if (channel == layout.labels.end()) {
        refuse("the map names {}, the channels are {}", label, fmt::join(layout.labels, " "));
      }
      std::size_t& group = groups[static_cast<std::size_t>(channel - layout.labels.begin())];
      if (group < parts.size()) refuse("the map names {} twice", label);
      group = part;
    }
  }
  for (std::size_t c = 0; c < groups.size(); ++c) {
    if (groups[c] == parts.size()) refuse("the map lacks {}", layout.labels[c]);
  }
  return numbered(groups);
}

std::string text_of(const LinkMap& map, const ChannelLayout& layout) {
  std::vector<Labels> groups(static_cast<std::size_t>(count_groups(map)));
  for (std::size_t c = 0; c < layout.labels.size(); ++c) {
    groups[static_cast<std::size_t>(map[c])].push_back(layout.labels[c]);
  }
  Labels texts;
  texts.reserve(groups.size());
  for (const Labels& group : groups) texts.push_back(fmt::format("{}", fmt::join(group, " ")));
  return fmt::format("{}", fmt::join(texts, " | "));
}

}  // namespace channelstrip::host
