// channelstrip info

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

void add_info_command(CLI::App& program);

}  // namespace channelstrip::host
