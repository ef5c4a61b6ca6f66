// Prints the hashes of the library that this program is linked with, as tests/golden/hashes.txt
// lists them: format, scene, audio, state, meters.

#include <stdio.h>

#include "golden.h"
#include "linked_entries.h"

using namespace channelstrip::golden;

int main() {
  for (int format = 0; format < kFormatCount; ++format) {
    for (int scene = 0; scene < kSceneCount; ++scene) {
      char line[kLongestLine];
      write_line(line, format, scene, kLinkedEntries[format]);
      puts(line);
    }
  }
  return 0;
}
