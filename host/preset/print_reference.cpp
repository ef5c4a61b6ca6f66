// Prints docs/presets.md: preset_reference FOLDER_OF_PRESETS

#include <cstdio>

#include "reference.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: preset_reference FOLDER_OF_PRESETS\n", stderr);
    return 1;
  }
  std::fputs(channelstrip::host::preset_reference(argv[1]).c_str(), stdout);
}
