// Which channels the dynamics link. A link group detects one level, the greatest of its channels,
// and gives all of them one gain.

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "channel_layout.h"
#include "refusal.h"
#include "settings.h"

namespace channelstrip::host {

// The group of each channel, from 0 in order of first appearance; entries from N on are 0. A map of
// more groups than the layout's format holds takes several strips of the library.
using LinkMap = std::array<int, 8>;

int count_groups(const LinkMap& map);

// The map of a strip that processes only these `channels`.
LinkMap restricted(const LinkMap& map, std::span<const std::size_t> channels);

// The map of a style, which is the same whatever the order of the channels. In the layouts of
// default_layout and choose_layout all styles but kNone have as few groups as the format holds.
LinkMap link_map(const ChannelLayout& layout, LinkStyle style);

// A map that was read, or why there is none.
struct ReadLinkMap {
  LinkMap map = {};
  std::optional<Refusal> refusal = std::nullopt;
};

// Reads "L R C | LFE | Ls Rs": blanks separate labels, bars groups. Every channel of the layout
// must stand in exactly one group. Doesn't allocate.
ReadLinkMap read_link_map(std::string_view text, const ChannelLayout& layout);

// The map that the settings have for the layout's format, or else that of their link style.
ReadLinkMap read_links(const StripSettings& settings, const ChannelLayout& layout);

// As read_link_map(), but throws std::invalid_argument with the words of the refusal.
LinkMap parse_link_map(std::string_view text, const ChannelLayout& layout);

// The text that parse_link_map takes, groups and channels in order of the layout.
std::string text_of(const LinkMap& map, const ChannelLayout& layout);

}  // namespace channelstrip::host
