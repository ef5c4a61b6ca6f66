// The options of every command that runs a strip.

#pragma once

#include <string>

#include "../run/strip_options.h"

namespace CLI {
class App;
}

namespace channelstrip::host {

// Adds the option for a preset, a file or one that comes with the program, by these names.
void add_preset_option(CLI::App& command, const std::string& names, StripOptions& options);

// Fills the options when `command` is parsed.
void add_strip_options(CLI::App& command, StripOptions& options);

}  // namespace channelstrip::host
