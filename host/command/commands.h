// The subcommands of channelstrip. Each adds itself to the program, its --help included.

#pragma once

namespace CLI {
class App;
}

namespace channelstrip::host {

// The others are added before it.
void add_complete_command(CLI::App& program);
void add_curves_command(CLI::App& program);
void add_import_command(CLI::App& program);
void add_info_command(CLI::App& program);
void add_meters_command(CLI::App& program);
void add_presets_command(CLI::App& program);
void add_render_command(CLI::App& program);
void add_report_command(CLI::App& program);

}  // namespace channelstrip::host
