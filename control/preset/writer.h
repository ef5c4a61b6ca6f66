// Setting keys by name, whatever table they stand in.

#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "layer.h"
#include "nearest.h"
#include "value.h"

namespace channelstrip::host {

// Refuses a key `name` that isn't one of those that `table` knows.
[[noreturn]] inline void fail_unknown(const Entry& entry, const Layer& layer, std::string_view name,
                                      std::string_view table,
                                      const std::vector<std::string_view>& known) {
  fail(layer.place(entry.key.source(), entry.path),
       "unknown key" +
           suggestion(name, known, fmt::format("{} takes {}", table, fmt::join(known, ", "))));
}

inline const toml::table& table_of(const Entry& entry, const Layer& layer) {
  if (const toml::table* table = entry.node.as_table()) return *table;
  fail(layer.place(entry.node.source(), entry.path),
       fmt::format("must be a table, [{}]", entry.path));
}

template <class Settings>
using Keys = std::type_identity_t<std::span<const Key<Settings>>>;

template <class Settings>
std::vector<std::string_view> names(std::span<const Key<Settings>> keys) {
  std::vector<std::string_view> result;
  for (const Key<Settings>& key : keys) result.push_back(key.name);
  return result;
}

// Sets the key of that name; null when there is none.
template <class Settings>
const Key<Settings>* set_key(const Entry& entry, const Layer& layer, Keys<Settings> keys,
                             Settings& settings) {
  const auto key = std::ranges::find(keys, entry.key.str(), &Key<Settings>::name);
  if (key == keys.end()) return nullptr;
  if (key->lasting && layer.kind == Layer::Kind::kChange) {
    fail(layer.place(entry.key.source(), entry.path),
         fmt::format("a band's {} can't change in time: its filters would jump, not glide",
                     key->name));
  }
  key->access.set(settings, placing(layer.place(entry.node.source(), entry.path),
                                    [&] { return value_of(entry.node, *key); }));
  return &*key;
}

}  // namespace channelstrip::host
