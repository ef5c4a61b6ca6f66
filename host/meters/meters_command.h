// channelstrip meters IN

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

void add_meters_command(CLI::App& program);

}  // namespace channelstrip::host
