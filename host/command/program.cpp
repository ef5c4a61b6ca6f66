#include "program.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <string_view>

#include "../system/interrupt.h"
#include "command_line.h"
#include "commands.h"
#include "help_style.h"

namespace channelstrip::host {
namespace {

int fail(std::string_view what) {
  print_message(what);
  return 1;
}

}  // namespace

int run_program(int argc, char** argv) {
  try {
    CLI::App program("Equaliser, dynamics and meters for audio files of 1 to 8 channels",
                     "channelstrip");
    program.set_version_flag("--version", "channelstrip " CHANNELSTRIP_VERSION,
                             "Print the version and exit");
    set_help_style(program);
    add_render_command(program);
    add_meters_command(program);
    add_report_command(program);
    add_presets_command(program);
    add_import_command(program);
    add_info_command(program);
    add_curves_command(program);
    add_complete_command(program);
    program.footer(
        "Examples:\n"
        "  $ channelstrip render voice.wav out.wav --preset voice.toml\n"
        "  $ channelstrip render --help");
    try {
      program.parse(argc, argv);
    } catch (const CLI::Success& help_or_version) {
      return program.exit(help_or_version);
    } catch (const CLI::RuntimeError& status) {
      return status.get_exit_code();
    }
    if (program.get_subcommands().empty()) return fail("no subcommand; --help lists them");
    return 0;
  } catch (const Interrupted& interrupted) {
    end_by_signal(interrupted.signal);
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}

}  // namespace channelstrip::host
