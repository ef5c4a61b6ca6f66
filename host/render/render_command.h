// channelstrip render IN OUT

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

void add_render_command(CLI::App& program);

}  // namespace channelstrip::host
