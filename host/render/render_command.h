// channelstrip render IN OUT

#pragma once

#include <CLI/CLI.hpp>

namespace channelstrip::host {

void add_render_command(CLI::App& program);

}  // namespace channelstrip::host
