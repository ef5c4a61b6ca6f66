#include "edit.h"

#include <tests/model/random_scene.h>

#include <algorithm>
#include <cmath>

#include "choice.h"

namespace channelstrip::test {
namespace {

void set_samples(std::vector<float>& arena, Kind kind, const Step& step) {
  const std::size_t first = step.index % arena.size();
  const std::size_t end = std::min(first + 1 + step.part % 64, arena.size());
  for (std::size_t i = first; i < end; ++i) {
    const float value = number(step, arena[i]);
    if (kind == Kind::kOrderFree) {
      arena[i] = value;
    } else if (std::fabs(value) <= 4.0F) {
      arena[i] = value;
    }
  }
}

// Any buffer may lie anywhere and overlap any other; records may be shared with another instance.
void rewire(Scene& scene, Instance& it, const Step& step) {
  const std::size_t at = step.value % (scene.arena.size() - kMostSamples + 1);
  const std::size_t lender = step.value % scene.instances.size();
  switch (step.part % 4) {
    case 0:
      chosen(it.inputs_at, step.index) = at;
      break;
    case 1:
      chosen(it.outputs_at, step.index) = at;
      break;
    case 2:
      it.settings_of = lender;
      break;
    default:
      it.memory_of = lender;
  }
}

// Instances in any order, some twice, some left out.
void set_range(Scene& scene, const Step& step) {
  constexpr std::size_t kMostInRange = 20;
  auto& range = scene.range;
  const auto at = range.begin() + static_cast<std::ptrdiff_t>(step.index % (range.size() + 1));
  if (step.part % 2 == 0) {
    if (range.size() < kMostInRange) range.insert(at, step.instance % scene.instances.size());
  } else if (at != range.end()) {
    range.erase(at);
  }
}

int32_t below(const Step& step, int end) {
  return static_cast<int32_t>(step.value % static_cast<uint32_t>(end));
}

}  // namespace

void edit(Scene& scene, const Format& format, Kind kind, const Step& step) {
  if (scene.instances.empty()) return;
  Instance& it = chosen(scene.instances, step.instance);
  const bool freely = kind == Kind::kOrderFree;
  switch (step.what) {
    case What::kSamples:
      set_samples(scene.arena, kind, step);
      break;
    case What::kWiring:
      if (freely) rewire(scene, it, step);
      break;
    case What::kRange:
      set_range(scene, step);
      break;
    case What::kCount:
      it.count = below(step, 16 + kMostCount + 1) - 16;
      break;
    case What::kKey:
      it.key_input = below(step, format.stem.channels + kKeys);
      break;
    case What::kLinkGroup:
      chosen(it.dyn_coefs.linkGroup, step.index) = below(step, format.stem.groups);
      break;
    default:
      freely ? edit_freely(it, step) : edit_steadily(it, step);
  }
}

}  // namespace channelstrip::test
