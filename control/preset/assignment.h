// Settings from the command line: "compressor.threshold=-18".

#pragma once

#include <string>

#include "draft.h"

namespace channelstrip::host {

// Writes "KEY=VALUE" into the draft. KEY is a key as in a preset, where comp. and exp. may stand
// for compressor. and expander.; VALUE is a value as in a preset, text also without quotes. Throws
// std::runtime_error: "--set KEY=VALUE: what is wrong".
void assign(const std::string& assignment, Draft& draft);

}  // namespace channelstrip::host
