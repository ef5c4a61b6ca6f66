// The golden programme as a WebAssembly module without imports, for script/check-wasm.

#include "golden.h"
#include "linked_entries.h"

using namespace channelstrip::golden;

// The address of a scene's line; null where there is no such scene.
extern "C" __attribute__((export_name("line"))) const char* line_of(int format, int scene) {
  static char line[kLongestLine];
  if (format >= kFormatCount || scene >= kSceneCount) return nullptr;
  write_line(line, format, scene, kLinkedEntries[format]);
  return line;
}
