// Runs the sweep at any length for one stem format. Prints one line with format, quads, deviations,
// errors and differing calls; on a failure also the first one on stderr, with status 1.
//
//   sweep_soak FORMAT QUADS [FIRST_SEED]

#include <control/library/library.h>
#include <fmt/format.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "run_scene.h"
#include "sweep.h"

using namespace channelstrip;

int main(int argc, char** argv) {
  const host::StemFormat* format = argc > 2 ? host::find_stem_format(argv[1]) : nullptr;
  if (format == nullptr || argc > 4) {
    fmt::print(stderr, "usage: sweep_soak FORMAT QUADS [FIRST_SEED]\n");
    return 2;
  }
  const int64_t quads = std::atoll(argv[2]);
  const auto seed = static_cast<uint32_t>(argc > 3 ? std::atoll(argv[3]) : 1'000'000);
  const host::Library library(CHANNELSTRIP_LIBRARY);
  const test::Processor processor = [entry =
                                         library.entry_point(*format)](const test::Scene& scene) {
    return test::by_library(entry, scene);
  };

  const auto part = [&](test::Subject subject) {
    return test::sweep(*format, processor, subject, seed, (quads + 3) / 4);
  };
  const test::Findings order_free = part(test::Subject::kOrderFree);
  const test::Findings edges = part(test::Subject::kEdges);
  const test::Findings equaliser = part(test::Subject::kEqualiser);
  const test::Findings dynamics = part(test::Subject::kDynamics);

  int64_t processed = 0, differing = 0;
  for (const test::Findings* found : {&order_free, &edges, &equaliser, &dynamics}) {
    processed += found->quads;
    differing += found->differing_calls;
    if (!found->first_failure.empty()) fmt::print(stderr, "{}\n", found->first_failure);
  }
  fmt::print("{:7} {:11} {:10.3g} {:10.3g} {:6} {:10.2e} {:10.2e} {:10.2e} {:8}\n", format->name,
             processed, equaliser.deviation, dynamics.deviation, edges.edges.least(),
             equaliser.error.signal, dynamics.error.signal, dynamics.error.gain, differing);
  return differing == 0 ? 0 : 1;
}
