#include "part.h"

#include <algorithm>

namespace channelstrip::host {
namespace {

std::string name_of(const std::string& label) {
  return label == "M" ? "Mono" : label;
}

}  // namespace

std::vector<Part> link_groups(const LinkMap& links, const ChannelLayout& layout) {
  std::vector<Part> groups;
  for (std::size_t c = 0; c < layout.labels.size(); ++c) {
    const auto group = static_cast<std::size_t>(links[c]);
    groups.resize(std::max(groups.size(), group + 1));
    if (!groups[group].name.empty()) groups[group].name += ' ';
    groups[group].name += name_of(layout.labels[c]);
    groups[group].channels.push_back(c);
  }
  return groups;
}

std::vector<Part> pictured_parts(const LinkMap& links, const ChannelLayout& layout) {
  if (layout.labels.size() > 2) return link_groups(links, layout);
  std::vector<Part> parts;
  for (const std::string& label : layout.labels) parts.push_back({name_of(label), {parts.size()}});
  return parts;
}

}  // namespace channelstrip::host
