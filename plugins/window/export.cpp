// What other binaries find the window by.

#include "table.h"

extern "C" __attribute__((visibility("default"))) const channelstrip::window::WindowTable*
channelstrip_window() {
  return &channelstrip::window::window_table();
}
