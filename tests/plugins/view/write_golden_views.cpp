// Writes the pictures that tests compare with. Look at each before it is committed.

#include <cstdio>

#include "golden.h"

int main() {
  using namespace channelstrip::view_test;
  for (const Golden& golden : all_goldens()) {
    if (!write_png(picture(golden).get(), path_of(golden))) {
      std::fprintf(stderr, "write_golden_views: can't write %s\n", path_of(golden).c_str());
      return 1;
    }
  }
  return 0;
}
