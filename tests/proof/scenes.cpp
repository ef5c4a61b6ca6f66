#include "scenes.h"

#include <tests/model/compare.h>
#include <tests/model/random_scene.h>
#include <tests/model/run_scene.h>
#include <tests/support/strip.h>

#include <span>
#include <utility>

namespace channelstrip::test {
Scene some_scene(Random& random, const host::StemFormat& format, Kind kind) {
  Scene scene;
  while (scene.instances.empty()) {
    scene = random_scene(random, format.channels, format.groups, kind);
  }
  return scene;
}

Scene independent_scene(Random& random, const host::StemFormat& format, Kind kind) {
  Scene scene = some_scene(random, format, kind);
  std::size_t next = 0;
  for (std::size_t i = 0; i < scene.instances.size(); ++i) {
    Instance& it = scene.instances[i];
    it.settings_of = it.memory_of = i;
    for (auto* const buffers : {&it.inputs_at, &it.outputs_at}) {
      for (std::size_t& at : *buffers) {
        at = next;
        next += kStride;
      }
    }
    if (it.key_input != 0) it.key_input = format.channels + random.integer(0, kKeys - 1);
  }
  scene.arena.resize(next);
  fill_arena(random, scene, kind);
  return scene;
}

Scene by_library(const host::StemFormat& format, Scene scene) {
  return by_library(entry_point(format), std::move(scene));
}

std::array<Scene, 3> by_each_order(const host::StemFormat& format, const Scene& scene) {
  return {by_model(format, scene, model::SumOrder::kInputFirst),
          by_model(format, scene, model::SumOrder::kFeedbackFirst),
          by_model(format, scene, model::SumOrder::kProductsFirst)};
}

std::string difference(const Scene& expected, const Scene& actual) {
  return first_difference(std::span(&expected, 1), actual);
}

std::string difference_from_model(const host::StemFormat& format, const Scene& scene) {
  return first_difference(by_each_order(format, scene), by_library(format, scene));
}

}  // namespace channelstrip::test
