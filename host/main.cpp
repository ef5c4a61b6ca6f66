// The program channelstrip.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "render/interrupt.h"
#include "render/render.h"
#include "render/render_command.h"

namespace {

// Every error is one line, whatever a file is called.
int fail(std::string_view what) {
  std::string line = fmt::format("channelstrip: {}", what);
  std::ranges::replace_if(
      line, [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  std::fputs((line + '\n').c_str(), stderr);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  // A file that grows over the process's limit shall be a failed write like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    CLI::App program("Equaliser, dynamics and meters for audio files of 1 to 8 channels",
                     "channelstrip");
    program.set_version_flag("--version", "channelstrip " CHANNELSTRIP_VERSION);
    channelstrip::host::add_render_command(program);
    try {
      program.parse(argc, argv);
    } catch (const CLI::Success& help_or_version) {
      return program.exit(help_or_version);
    }
    if (program.get_subcommands().empty()) return fail("no subcommand; --help lists them");
    return 0;
  } catch (const channelstrip::host::Interrupted& interrupted) {
    channelstrip::host::end_by_signal(interrupted.signal);
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
