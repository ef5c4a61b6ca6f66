// channelstrip report IN OUT -o PAGE

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

void add_report_command(CLI::App& program);

}  // namespace channelstrip::host
