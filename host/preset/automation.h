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
  const toml::table& keys;  // the time among them
};

// The [[at]] tables of a preset in order of time. Throws std::runtime_error,
// "FILE:LINE:COLUMN: key: what is wrong", for a time that lacks, isn't 0 or more and finite, or
// stands twice.
std::vector<Moment> moments(const toml::table& preset, const std::string& file);

}  // namespace channelstrip::host
