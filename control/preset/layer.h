// A layer is a set of settings written together, over those of earlier layers: the preset itself, a
// --set, or a change in time.

#pragma once

#include <toml++/toml.h>

#include <string>
#include <string_view>
#include <vector>

#include "place.h"

namespace channelstrip::host {

struct Layer {
  enum class Kind { kPreset, kAssignment, kChange };

  Kind kind;
  std::string origin;  // the file, or "--set KEY=VALUE"

  Place place(const toml::source_region& source, std::string_view path) const {
    if (kind == Kind::kAssignment) return {origin, ""};
    return {fmt::format("{}:{}:{}", origin, source.begin.line, source.begin.column),
            kind == Kind::kChange ? fmt::format("at.{}", path) : std::string(path)};
  }
};

// An entry of a table and its path from the top level: "compressor.threshold".
struct Entry {
  const toml::key& key;
  const toml::node& node;
  std::string path;
};

// A table's entries in the order in which they were written.
std::vector<Entry> entries(const toml::table& table, std::string_view prefix = "");

}  // namespace channelstrip::host
