// The program channelstrip.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <string_view>

#include "command/command_line.h"
#include "command/commands.h"
#include "command/help_style.h"
#include "system/interrupt.h"
#include "system/standard_streams.h"

namespace {

int fail(std::string_view what) {
  channelstrip::host::print_message(what);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  channelstrip::host::reserve_standard_streams();
  // Makes a file that exceeds the process's size limit, or a pipe that nobody reads any more, a
  // failed write like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    CLI::App program("Equaliser, dynamics and meters for audio files of 1 to 8 channels",
                     "channelstrip");
    program.set_version_flag("--version", "channelstrip " CHANNELSTRIP_VERSION,
                             "Print the version and exit");
    channelstrip::host::set_help_style(program);
    channelstrip::host::add_render_command(program);
    channelstrip::host::add_meters_command(program);
    channelstrip::host::add_report_command(program);
    channelstrip::host::add_presets_command(program);
    channelstrip::host::add_import_command(program);
    channelstrip::host::add_info_command(program);
    channelstrip::host::add_curves_command(program);
    channelstrip::host::add_complete_command(program);
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
  } catch (const channelstrip::host::Interrupted& interrupted) {
    channelstrip::host::end_by_signal(interrupted.signal);
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
