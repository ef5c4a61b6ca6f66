// The options of every command that runs a strip.

#pragma once

#include "../run/strip_options.h"

namespace CLI {
class App;
}

namespace channelstrip::host {

// Fills the options when `command` is parsed.
void add_strip_options(CLI::App& command, StripOptions& options);

}  // namespace channelstrip::host
