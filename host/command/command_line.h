// How every command talks to its user.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "../system/output_file.h"

namespace CLI {
class App;
}

namespace channelstrip::host {

// Writes "channelstrip: <what>" to standard error, as one line.
void print_message(std::string_view what);

// Writes to standard output; throws std::runtime_error when it can't.
void print_output(std::string_view text);

// The exit status when all was done, but with less than the inputs state to hold or than was asked.
inline constexpr int kIncomplete = 3;

// A check of an option that takes a number: its message for what isn't `low` to `high`, NaN among
// it, empty for what is.
std::function<std::string(const std::string&)> within(double low, double high,
                                                      std::string_view unit);

// Adds --overwrite, which every command takes that writes files.
void add_overwrite_option(CLI::App& command, Existing& existing);

}  // namespace channelstrip::host
