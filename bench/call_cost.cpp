// Calls the library for several workloads, each with two counts of samples, and prints a line for
// each call: "64 Mono x8". script/bench-count counts the instructions.
//
//   call_cost LIBRARY

#include <control/library/library.h>
#include <fmt/format.h>
#include <tests/support/counted_call.h>

#include <exception>

#include "console.h"

namespace channelstrip::bench {
namespace {

struct Work {
  const char* format;
  int strips = 1;
  Variant variant = Variant::kUsual;
};

constexpr Work kWorks[] = {{"Mono"},    {"Stereo"},    {"LCR"},
                           {"Quad"},    {"5.1"},       {"7.1"},
                           {"Mono", 8}, {"Stereo", 4}, {"Mono", 1, Variant::kGliding}};

AlgEntry_16_Stem* counted = nullptr;

void call_counted(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  counted_call(counted, begin, end);
}

// The first call isn't counted: the readouts it raises from 0 take steps of their own.
void run(const host::Library& library) {
  for (const Work& work : kWorks) {
    for (const int samples : {64, 512}) {
      Console console({work.format, work.strips, samples, work.variant}, 0);
      counted = library.entry_point(*host::find_stem_format(work.format));
      console.call(counted, 0);
      console.call(call_counted, 1);
      fmt::print("{} {}", samples, work.format);
      if (work.strips > 1) fmt::print(" x{}", work.strips);
      fmt::print("{}\n", work.variant == Variant::kGliding ? " gliding" : "");
    }
  }
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  if (argc != 2) {
    fmt::print(stderr, "usage: call_cost LIBRARY\n");
    return 2;
  }
  channelstrip::bench::run(channelstrip::host::Library(argv[1]));
  return 0;
} catch (const std::exception& error) {
  fmt::print(stderr, "call_cost: {}\n", error.what());
  return 1;
}
