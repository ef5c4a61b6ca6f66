// Processes a strip in which everything is at work, in two calls: of 64 samples and of as many as
// are asked for. Linked with the library; script/quad-cost counts the library's instructions.
//
//   quad_cost FORMAT SAMPLES

#include <tests/golden/linked_entries.h>
#include <tests/support/busy_strip.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  using namespace channelstrip;
  const int samples = argc == 3 ? std::atoi(argv[2]) : 0;
  if (samples < 1 || !host::find_stem_format(argv[1])) {
    std::fputs("usage: quad_cost FORMAT SAMPLES\n", stderr);
    return 2;
  }
  test::BusyStrip strip(argv[1], std::max(samples, 64));
  AlgEntry_16_Stem* const entry =
      golden::kLinkedEntries[&strip.format - host::stem_formats().data()];
  const SChannelStrip_Alg_Context* const contexts[] = {strip.context()};
  for (const int count : {64, samples}) {
    strip.sample_count = count;
    entry(contexts, contexts + 1);
  }
}
