// Prints the hashes of the library that this program is linked with, as tests/golden/hashes.txt
// lists them: format, scene, audio, state, meters.

#include <stdio.h>

#include "golden.h"
#include "linked_entries.h"

using namespace channelstrip::golden;

int main() {
  for (int format = 0; format < kFormatCount; ++format) {
    for (int scene = 0; scene < kSceneCount; ++scene) {
      const Hashes hashes = run(format, scene, kLinkedEntries[format]);
      char audio[17], state[17], meters[17];
      write_hash(audio, hashes.audio);
      write_hash(state, hashes.state);
      write_hash(meters, hashes.meters);
      printf("%s %s %s %s %s\n", kFormats[format].name, kScenes[scene].name, audio, state, meters);
    }
  }
  return 0;
}
