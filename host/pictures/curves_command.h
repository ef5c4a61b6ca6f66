// channelstrip curves.

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

void add_curves_command(CLI::App& program);

}  // namespace channelstrip::host
