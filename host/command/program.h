#pragma once

namespace channelstrip::host {

// The program channelstrip but for what it sets for the whole process. Returns its exit status.
int run_program(int argc, char** argv);

}  // namespace channelstrip::host
