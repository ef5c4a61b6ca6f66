// One call over a scene's range, by the built library or by the model. Returns the scene after the
// call; the argument is a copy.

#pragma once

#include <ChannelStrip/frame/entry_points.h>
#include <control/library/stem_format.h>

#include "scene.h"
#include "section.h"
#include "strip.h"

namespace channelstrip::test {

inline Scene by_library(AlgEntry_16_Stem* entry, Scene scene) {
  const Contexts contexts(scene);
  const auto& range = contexts.range();
  entry(range.data(), range.data() + range.size());
  return scene;
}

template <typename Real = float>
Scene by_model(const host::StemFormat& format, Scene scene,
               model::SumOrder order = model::SumOrder::kInputFirst,
               model::LevelWatch* watch = nullptr) {
  const Contexts contexts(scene);
  for (const SChannelStrip_Alg_Context* context : contexts.range()) {
    model::process<Real>(*context, format.channels, format.groups, order, watch);
  }
  return scene;
}

}  // namespace channelstrip::test
