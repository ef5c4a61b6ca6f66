// The program channelstrip.

#include <csignal>

#include "command/program.h"
#include "system/standard_streams.h"

int main(int argc, char** argv) {
  channelstrip::host::reserve_standard_streams();
  // Makes a file that exceeds the process's size limit, or a pipe that nobody reads any more, a
  // failed write like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  return channelstrip::host::run_program(argc, argv);
}
