// How every command talks to its user.

#pragma once

#include <string_view>

namespace channelstrip::host {

// Writes "channelstrip: <what>" to standard error, as one line.
void print_message(std::string_view what);

// Writes to standard output; throws std::runtime_error when it can't.
void print_output(std::string_view text);

}  // namespace channelstrip::host
