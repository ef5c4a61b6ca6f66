#include "layer.h"

#include <algorithm>
#include <utility>

namespace channelstrip::host {

std::vector<Entry> entries(const toml::table& table, std::string_view prefix) {
  std::vector<std::pair<const toml::key*, const toml::node*>> written;
  for (const auto& [key, node] : table) written.emplace_back(&key, &node);
  std::ranges::sort(written, [](const auto& a, const auto& b) {
    return a.first->source().begin < b.first->source().begin;
  });
  std::vector<Entry> result;
  for (const auto& [key, node] : written) {
    const std::string path =
        prefix.empty() ? std::string(key->str()) : fmt::format("{}.{}", prefix, key->str());
    result.push_back({*key, *node, path});
  }
  return result;
}

}  // namespace channelstrip::host
