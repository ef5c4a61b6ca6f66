// Reduces a failing scene to the smallest and plainest one that still fails.

#pragma once

#include <functional>
#include <string>

#include "scene.h"

namespace channelstrip::test {

using Fails = std::function<bool(const Scene&)>;

// Removes entries of the range, instances, samples and bands, and sets settings, memory and audio
// to neutral values, as long as the scene still fails. A section or a curve is neutralised as a
// whole: half of one would be settings that no host makes. Returns a scene that doesn't fail
// unchanged.
Scene shrunk(Scene scene, const Fails& fails);

// Lists what is not neutral in a scene, one line per instance.
std::string description(const Scene& scene);

}  // namespace channelstrip::test
