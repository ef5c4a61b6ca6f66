// Prints the stack that a library's entry points take, in bytes, one line per stem format.
//
//   stack_depth LIBRARY

#include <cstdio>
#include <exception>

#include "painted_stack.h"

int main(int argc, char** argv) try {
  using namespace channelstrip;
  if (argc != 2) {
    std::fputs("usage: stack_depth LIBRARY\n", stderr);
    return 2;
  }
  const host::Library library(argv[1]);
  for (const host::StemFormat& format : host::stem_formats()) {
    const test::EveryMode range(format);
    const std::size_t depth = test::PaintedStack::depth(range, library.entry_point(format));
    std::printf("%-7.*s %6zu\n", static_cast<int>(format.name.size()), format.name.data(), depth);
  }
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "stack_depth: %s\n", error.what());
  return 1;
}
