// Makes a failing scene as small and as plain as it can be and still fail.

#pragma once

#include <functional>
#include <string>

#include "scene.h"

namespace channelstrip::test {

using Fails = std::function<bool(const Scene&)>;

// Leaves out calls of instances, instances, samples and bands, and puts settings, memory and audio
// to their neutral values, as long as the scene still fails. A section and a curve go as a whole:
// half of one may ask what no host does. Gives the scene back as it is if it doesn't fail.
Scene shrunk(Scene scene, const Fails& fails);

// What of a scene isn't neutral, one line per instance.
std::string description(const Scene& scene);

}  // namespace channelstrip::test
