#include "history.h"

#include <tests/model/random_scene.h>

#include <iterator>

#include "edit.h"
#include "judge.h"
#include "step.h"

namespace channelstrip::test {

std::string first_fault(std::span<const uint8_t> input) {
  constexpr int kMostCalls = 6;
  constexpr Kind kKinds[] = {Kind::kOrderFree, Kind::kOrderFree, Kind::kEqualiser, Kind::kDynamics};

  Bytes bytes(input);
  const Format format = format_at(bytes.byte());
  const Kind kind = kKinds[bytes.byte() % std::size(kKinds)];
  Random first(bytes.half());
  Scene scene = random_scene(first, format.stem.channels, format.stem.groups, kind);

  for (int calls = 1; !bytes.empty() && calls < kMostCalls;) {
    const Step step(bytes);
    switch (step.what) {
      case What::kCall: {
        const std::string fault = judge_call(scene, format, kind);
        if (!fault.empty()) return fault;
        ++calls;
        break;
      }
      case What::kNewSettings: {
        Random random(step.value);
        change_scene(random, scene, format.stem.groups, kind);
        break;
      }
      case What::kNewAudio: {
        Random random(step.value);
        fill_arena(random, scene, kind);
        break;
      }
      default:
        edit(scene, format, kind, step);
    }
  }
  return judge_call(scene, format, kind);
}

}  // namespace channelstrip::test
