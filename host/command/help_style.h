// The layout of --help.

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

// Lays out --help of the program and of the subcommands added afterwards, in 80 columns, for people
// and for the manual pages made of it: usage, what it does, arguments, options with their defaults,
// subcommands, exit status, examples.
//
// The first line of a description heads the manual page and stands in the list of subcommands. The
// footer continues the description, except for what follows "Exit status:", which adds to the usual
// 0 and 1, and "Examples:". Lines that begin with a blank stay as they are, others are wrapped.
void set_help_style(CLI::App& program);

}  // namespace channelstrip::host
