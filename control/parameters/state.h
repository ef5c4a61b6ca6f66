// Values as TOML, in the format of presets.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "values.h"

namespace channelstrip::host {

// Something that was read otherwise than it was written, or not at all.
struct StateProblem {
  unsigned line, column;  // from 1
  std::string what;       // one line
};

// Every value that isn't its initial one, as a preset that has the same effect. Values that mean
// nothing to the type of their band stand in its table `idle`.
std::string write_state(const Values& values);

// Begins with the initial values. What can't be used is left out and noted: a key that isn't known,
// a value of the wrong kind, changes in time. A value outside its limits becomes the nearest inside
// and is noted, too. None for text that isn't TOML, with a note why.
std::optional<Values> read_state(std::string_view text, std::vector<StateProblem>& problems);

}  // namespace channelstrip::host
