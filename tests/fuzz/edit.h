// Single changes to a scene.

#pragma once

#include <tests/model/random_scene.h>

#include "formats.h"
#include "step.h"

namespace channelstrip::test {

// Makes the change that a step names, if `kind` allows it: what a comparison can ask of a scene, it
// can ask of the changed one. Records get finite numbers, audio any.
void edit(Scene& scene, const Format& format, Kind kind, const Step& step);

}  // namespace channelstrip::test
