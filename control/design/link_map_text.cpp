// Link maps as users read and write them.

#include <fmt/ranges.h>

#include <vector>

#include "link_map.h"
#include "refusal_words.h"
#include "refuse.h"

namespace channelstrip::host {
namespace {

using Labels = std::vector<std::string>;

}  // namespace

LinkMap parse_link_map(std::string_view text, const ChannelLayout& layout) {
  const ReadLinkMap read = read_link_map(text, layout);
  if (read.refusal) refuse("{}", words_of(*read.refusal));
  return read.map;
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
