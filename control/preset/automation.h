// Changes in time: a preset's [[at]] tables.

#pragma once

#include <toml++/toml.h>

#include <string>
#include <vector>

#include "layer.h"

namespace channelstrip::host {

struct Moment {
  double time;  // s, 0 or more
  Layer layer;
  const toml::table& keys;  // including the time
};

// The [[at]] tables of a preset in order of time. Throws std::runtime_error, "FILE:LINE:COLUMN:
// key: what is wrong", for a time that is missing, negative, not finite or given twice.
std::vector<Moment> moments(const toml::table& preset, const std::string& file);

}  // namespace channelstrip::host
