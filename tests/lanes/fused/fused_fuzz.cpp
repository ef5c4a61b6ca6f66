// Compares fused steps made of doubles with the processor's instruction, for as many triples of
// operands as asked. Started by script/fuzz-fused.

#include <cstdio>
#include <cstdlib>

#include "differences.h"

using namespace channelstrip::test;

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: fused_fuzz TRIPLES SEED\n");
    return 2;
  }
  const uint64_t wanted = std::strtoull(argv[1], nullptr, 10);
  const uint64_t seed = std::strtoull(argv[2], nullptr, 10);
  constexpr FusedSteps* kSteps[] = {fused_sse2, fused_lanes_sse2, fused_avx, fused_lanes_avx};
  uint64_t triples = 0;
  FusedDifferences found, twice;
  for (int kind = 0; kind < FusedTriples::kKinds; ++kind) {
    FusedComparison comparison(seed, static_cast<FusedTriples::Kind>(kind));
    const uint64_t until = wanted / FusedTriples::kKinds * static_cast<uint64_t>(kind + 1) +
                           wanted % FusedTriples::kKinds;
    for (; triples < until; triples += FusedComparison::kAtATime) {
      comparison.draw();
      for (FusedSteps* const steps : kSteps) comparison.add(steps, found);
      comparison.add(fused_twice, twice);
    }
  }
  std::printf("%llu triples: %llu differences; %llu where doubles are rounded twice\n",
              static_cast<unsigned long long>(triples),
              static_cast<unsigned long long>(found.count),
              static_cast<unsigned long long>(twice.count));
  if (found.first) {
    std::printf("the first: %a * %a + %a\n", static_cast<double>(found.first->a),
                static_cast<double>(found.first->b), static_cast<double>(found.first->c));
  }
  return found.count == 0 && triples >= wanted ? 0 : 1;
}
