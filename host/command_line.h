// How every command talks to its user.

#pragma once

#include <string>
#include <string_view>

namespace channelstrip::host {

// Control characters become question marks: a file's name can't break a line.
std::string one_line(std::string_view text);

// Writes "channelstrip: <what>" to standard error, as one line.
void print_message(std::string_view what);

// Writes to standard output; throws std::runtime_error when it can't.
void print_output(std::string_view text);

}  // namespace channelstrip::host
