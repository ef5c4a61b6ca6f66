// channelstrip import FILE

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

void add_import_command(CLI::App& program);

}  // namespace channelstrip::host
