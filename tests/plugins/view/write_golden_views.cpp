// Writes the pictures and places that tests compare with. Look at each picture before it is
// committed.

#include <cstdio>
#include <fstream>

#include "golden.h"

int main() {
  using namespace channelstrip::view_test;
  const auto complain = [](const std::string& path) {
    std::fprintf(stderr, "write_golden_views: can't write %s\n", path.c_str());
    return 1;
  };
  for (const Golden& golden : all_goldens()) {
    if (!write_png(picture(golden).get(), path_of(golden))) return complain(path_of(golden));
  }
  std::ofstream file(path_of_points());
  file << points() << std::flush;
  return file ? 0 : complain(path_of_points());
}
