#include "link_map.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <tuple>

namespace channelstrip::host {
namespace {

// One per channel.
template <typename Name>
using Names = FixedVector<Name, std::tuple_size_v<LinkMap>>;

// Cuts the text before the first separator off, which goes too, and returns it.
std::string_view cut(std::string_view& text, std::string_view separators) {
  const std::size_t end = std::min(text.find_first_of(separators), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

// Groups of any names, numbered from 0 in order of first appearance.
template <typename Name>
LinkMap numbered(const Names<Name>& groups) {
  LinkMap map{};
  Names<Name> seen;
  for (std::size_t c = 0; c < groups.size(); ++c) {
    const auto* found = std::ranges::find(seen, groups[c]);
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

ReadLinkMap refused(LinkFault::Kind kind, std::string_view text,
                    const ChannelLayout* layout = nullptr) {
  return {.refusal = Refusal{.why = LinkFault{kind, text, layout}}};
}

}  // namespace

int count_groups(const LinkMap& map) {
  return 1 + std::ranges::max(map);
}

LinkMap restricted(const LinkMap& map, std::span<const std::size_t> channels) {
  Names<int> groups;
  for (const std::size_t c : channels) groups.push_back(map[c]);
  return numbered(groups);
}

LinkMap link_map(const ChannelLayout& layout, LinkStyle style) {
  Names<std::string_view> groups;
  for (const std::string& label : layout.labels) groups.push_back(group_name(label, style));
  return numbered(groups);
}

ReadLinkMap read_link_map(std::string_view text, const ChannelLayout& layout) {
  using Kind = LinkFault::Kind;
  constexpr std::ptrdiff_t kNone = -1;
  Names<std::ptrdiff_t> groups;
  groups.assign(layout.labels.size(), kNone);
  std::string_view rest = text;
  for (std::ptrdiff_t part = 0, parts = 1 + std::ranges::count(text, '|'); part < parts; ++part) {
    std::string_view members = cut(rest, "|");
    bool is_empty = true;
    while (!members.empty()) {
      const std::string_view label = cut(members, " \t\n\v\f\r");
      if (label.empty()) continue;
      is_empty = false;
      const auto channel = std::ranges::find(layout.labels, label);
      if (channel == layout.labels.end()) return refused(Kind::kUnknownLabel, label, &layout);
      std::ptrdiff_t& group = groups[static_cast<std::size_t>(channel - layout.labels.begin())];
      if (group != kNone) return refused(Kind::kTwice, label);
      group = part;
    }
    if (is_empty) return refused(Kind::kEmptyGroup, text);
  }
  for (std::size_t c = 0; c < groups.size(); ++c) {
    if (groups[c] == kNone) return refused(Kind::kMissing, layout.labels[c]);
  }
  return {.map = numbered(groups)};
}

ReadLinkMap read_links(const StripSettings& settings, const ChannelLayout& layout) {
  ReadLinkMap read{.map = link_map(layout, settings.link_style)};
  for (const auto& [name, text] : settings.link) {
    const StemFormat* format = find_stem_format(name);
    if (!format) return refused(LinkFault::Kind::kUnknownFormat, name);
    if (format->name == layout.format->name) read = read_link_map(text, layout);
    if (read.refusal) break;
  }
  return read;
}

}  // namespace channelstrip::host
